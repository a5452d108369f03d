// The record behind every handle of the interface, and what all exported functions share.
#ifndef LUMVIK_API_ENGINE_CONTEXT_H_
#define LUMVIK_API_ENGINE_CONTEXT_H_

#include <string>

#include "base/adjustments.h"
#include "image/image_buffer.h"
#include "image/raw_decoder.h"
#include "lumvik.h"

namespace lumvik {

// Owns an lcms2 profile. Nothing fills it yet: the place for an output color profile.
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

// Members are released in the reverse of this order.
struct EngineContext {
  lumvik::DecodedImage decoded;
  lumvik::ImageBuffer source;    // what a render starts from
  lumvik::ImageBuffer rendered;  // of the last render; current only while render_valid
  lumvik::IccProfileHolder output_profile;
  lumvik::Adjustments adjustments;
  bool render_valid = false;
  std::string last_error;   // of the latest failure; success never clears it
  std::string source_path;  // of the last successful load; empty when nothing is loaded
  cv::Mat mask;             // subject mask; outlives the image it was made for
  float bg_blur = 0;        // percent
  bool mask_valid = false;
};

namespace lumvik {

// True when an image is loaded; otherwise the last error says so.
bool RequireImage(EngineContext& context);

// Stores the text as the last error and returns kFailure.
int Fail(EngineContext& context, std::string text);

// Default adjustments, and no current render.
void ResetAdjustments(EngineContext& context);

// Renders when there is no current render, without declaring the result current: an export does not
// change when the next one renders.
void RenderIfStale(EngineContext& context);

}  // namespace lumvik

#endif  // LUMVIK_API_ENGINE_CONTEXT_H_
