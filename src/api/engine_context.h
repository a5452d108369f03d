// The context behind an EngineContext handle, and the helpers that all exported functions share.
#ifndef LUMVIK_API_ENGINE_CONTEXT_H_
#define LUMVIK_API_ENGINE_CONTEXT_H_

#include <optional>
#include <string>

#include "base/adjustments.h"
#include "base/large_image.h"
#include "image/image_buffer.h"
#include "image/raw_decoder.h"
#include "lumvik.h"

namespace lumvik {

// Owns an lcms2 profile. Reserved for an output color profile; not set yet.
class IccProfileHolder {
 public:
  IccProfileHolder() = default;
  ~IccProfileHolder();
  IccProfileHolder(const IccProfileHolder&) = delete;
  IccProfileHolder& operator=(const IccProfileHolder&) = delete;

 private:
  void* handle_ = nullptr;  // cmsHPROFILE
  std::string name_;
};

inline constexpr int kSuccess = 0;
inline constexpr int kFailure = -1;

}  // namespace lumvik

// Members are destroyed in reverse order of declaration.
struct EngineContext {
  lumvik::DecodedImage decoded;
  lumvik::ImageBuffer source;    // input of every render
  lumvik::ImageBuffer rendered;  // result of the last render; current only while render_valid
  lumvik::IccProfileHolder output_profile;
  lumvik::Adjustments adjustments;
  bool render_valid = false;
  bool was_rendered = false;                     // the loaded photograph, at least once
  std::optional<lumvik::LargeImageReuse> reuse;  // of the memory of a render in the next
  std::string last_error;                        // text of the latest failure; success never clears it
  std::string source_path;                       // of the loaded photograph; empty when nothing is loaded
  cv::Mat mask;                                  // subject mask; survives loads and unloads
  float bg_blur = 0;                             // percent
  bool mask_valid = false;
};

namespace lumvik {

// True when an image is loaded; otherwise sets the last error.
bool RequireImage(EngineContext& context);

// Stores the text as the last error and returns kFailure.
int Fail(EngineContext& context, std::string text);

// Restores the default adjustments and marks the render as stale.
void ResetAdjustments(EngineContext& context);

// Renders into context.rendered.
void Render(EngineContext& context);

// Renders when the last render is stale, and leaves it marked as stale: an export does not affect whether
// the next one renders.
void RenderIfStale(EngineContext& context);

}  // namespace lumvik

#endif  // LUMVIK_API_ENGINE_CONTEXT_H_
