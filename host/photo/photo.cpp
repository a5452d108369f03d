#include "photo/photo.h"

#include <cstring>
#include <utility>

#include "base/text_cut.h"
#include "photo/engine_call.h"
#include "photo/source_point.h"

namespace lumvik::host {

Photo::Photo(std::unique_ptr<PhotoSource> source, const lumvik_host_open_options& options)
    : source_(std::move(source)) {
  constexpr int kProxyQuality = 4;
  if (IsRaw()) {
    image_ = source_->Load(options.proxy_first != 0 ? kProxyQuality : options.quality);
  } else {
    OpenImage(options.keep_colors != 0);
  }
}

void Photo::OpenImage(bool keeps_colors) {
  constexpr int kFullQuality = 1;
  std::string warning;
  if (keeps_colors) {
    KeptColors kept = source_->Colors();
    image_ = source_->Load(kFullQuality);
    colors_ = std::move(kept.colors);
    profile_ = std::move(kept.description);
    warning = std::move(kept.warning);
  } else {
    PhotoSource::Converted converted = source_->LoadConverted();
    image_ = std::move(converted.image);
    profile_ = std::move(converted.profile);
    is_converted_ = converted.is_converted;
    warning = std::move(converted.warning);
  }
  if (warning.empty()) return;
  opening_warnings_.push_back(OneLine("the color profile of " + Shown() + " was not used: " + warning));
}

lumvik_host_photo_info Photo::Info() const {
  lumvik_host_photo_info info{};
  info.struct_size = sizeof(info);
  info.format = source_->Format();
  info.width = image_->Width();
  info.height = image_->Height();
  info.quality = image_->Quality();
  info.is_converted = is_converted_ ? 1 : 0;
  CopyCut(profile_, info.profile, sizeof(info.profile));
  return info;
}

std::vector<std::string> Photo::Warnings() const {
  std::vector<std::string> all = opening_warnings_;
  all.insert(all.end(), saving_warnings_.begin(), saving_warnings_.end());
  return all;
}

std::vector<std::string>& Photo::StartSaving() {
  saving_warnings_.clear();
  return saving_warnings_;
}

void Photo::Replace(std::unique_ptr<EngineImage> image) {
  image_ = std::move(image);
  has_mask_ = false;
  rendered_.reset();
  frame_.reset();
}

void Photo::FindSubject(cv::Point2d point) {
  if (!IsRaw()) {
    throw Failure(LUMVIK_HOST_UNSUPPORTED,
                  "cannot find the subject of " + Shown() + ", which is not a RAW file");
  }
  const cv::Size size(image_->Width(), image_->Height());
  // The engine would take the center along the negative axis only.
  const cv::Point2d center(-1, -1);
  const cv::Point2d source =
      point.x < 0 || point.y < 0 ? center : SourcePoint(point, size, Completed(Values()));
  CallEngine(Engine(), "cannot find the subject of " + Shown(), [&](EngineContext* context) {
    return lumvik_segment_subject(context, static_cast<float>(source.x), static_cast<float>(source.y));
  });
  has_mask_ = true;
  // What was blurred with another mask is stale.
  if (rendered_ && rendered_->background_blur > 0) rendered_.reset();
}

void Photo::RenderIfStale() {
  Settings complete = Completed(Values());
  if (!rendered_ || rendered_->settings != complete) Render(std::move(complete), 0);
}

std::shared_ptr<const Frame> Photo::RenderedFrame(float background_blur) {
  const float blur = has_mask_ ? background_blur : 0;
  Settings complete = Completed(Values());
  if (!rendered_ || rendered_->settings != complete || rendered_->background_blur != blur) {
    Render(std::move(complete), blur);
  }
  return frame_;
}

void Photo::Render(Settings complete, float background_blur) {
  rendered_.reset();
  frame_.reset();
  const std::size_t capacity =
      static_cast<std::size_t>(image_->Width()) * static_cast<std::size_t>(image_->Height()) * kFrameChannels;
  const std::shared_ptr<Frame> frame = memory_.Take(capacity);
  CallEngine(Engine(), "cannot render " + Shown(), [&](EngineContext* context) {
    lumvik_reset_adjustments(context);
    Apply(complete, context);
    lumvik_set_bg_blur(context, background_blur);
    return lumvik_get_preview(context, frame->pixels.get(), static_cast<int>(capacity));
  });
  frame->width = lumvik_get_width(Engine());
  frame->height = lumvik_get_height(Engine());
  frame_ = frame;
  rendered_ = Rendered{std::move(complete), background_blur};
}

}  // namespace lumvik::host
