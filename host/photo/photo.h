// An open photograph with its settings and its latest render.
#ifndef LUMVIK_HOST_PHOTO_PHOTO_H_
#define LUMVIK_HOST_PHOTO_PHOTO_H_

#include <cstdint>
#include <memory>
#include <opencv2/core/types.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "color/stated_profile.h"
#include "lumvik.h"
#include "lumvik_host.h"
#include "photo/engine_image.h"
#include "photo/frame.h"
#include "photo/photo_source.h"
#include "settings/settings.h"

namespace lumvik::host {

// For one thread at a time. Each function throws Failure.
class Photo {
 public:
  // `options` with the defaults filled in.
  Photo(std::unique_ptr<PhotoSource> source, const lumvik_host_open_options& options);

  EngineContext* Engine() const { return image_->Context(); }
  lumvik_host_photo_info Info() const;
  bool IsRaw() const { return source_->IsRaw(); }
  const PixelColors& Colors() const { return colors_; }
  // What the engine reads, and the photograph with its metadata: the same but for a name that contradicts the
  // content. Absolute.
  const std::string& SourcePath() const { return source_->ServedPath(); }
  const std::string& OriginalPath() const { return source_->OriginalPath(); }
  // For messages: "'a.jpg'".
  const std::string& Shown() const { return source_->Shown(); }

  // What could not be used: of opening, and of the latest save, which starts with none. Sentences.
  std::vector<std::string> Warnings() const;
  std::vector<std::string>& StartSaving();

  bool HasMask() const { return has_mask_; }

  // The settings that the functions below refer to; neutral at first.
  const Settings& Values() const { return *settings_; }
  void UseSettings(std::shared_ptr<const Settings> settings) { settings_ = std::move(settings); }

  // A photograph of another quality, which may be loaded while another thread uses this object.
  std::unique_ptr<EngineImage> Load(int quality) const { return source_->Load(quality); }
  // The settings stay, the mask does not.
  void Replace(std::unique_ptr<EngineImage> image);

  // Finds the subject at a point of the render, in fractions of its size; a negative one is the center of the
  // image.
  void FindSubject(cv::Point2d point);

  // Makes the engine's render that of the present settings, for what reads it from the engine. What is
  // rendered once is not rendered again: grain would differ.
  void RenderIfStale();

  // The render of the present settings as a frame.
  std::shared_ptr<const Frame> RenderedFrame(float background_blur);

 private:
  struct Rendered {
    Settings settings;  // a value for every setting
    float background_blur;
  };

  void OpenImage(bool keeps_colors);
  void Render(Settings complete, float background_blur);

  std::unique_ptr<PhotoSource> source_;
  std::unique_ptr<EngineImage> image_;
  PixelColors colors_ = SrgbColors();
  std::string profile_;
  std::vector<std::string> opening_warnings_;
  std::vector<std::string> saving_warnings_;
  bool is_converted_ = false;
  bool has_mask_ = false;
  std::shared_ptr<const Settings> settings_ = std::make_shared<const Settings>();
  std::optional<Rendered> rendered_;
  FrameMemory memory_;
  std::shared_ptr<const Frame> frame_;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_PHOTO_H_
