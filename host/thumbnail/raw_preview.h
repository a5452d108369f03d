// The preview image that a camera embeds in its RAW files.
#ifndef LUMVIK_HOST_THUMBNAIL_RAW_PREVIEW_H_
#define LUMVIK_HOST_THUMBNAIL_RAW_PREVIEW_H_

#include <cstdint>
#include <opencv2/core.hpp>
#include <string>

namespace lumvik::host {

struct RawPreview {
  std::string jpeg;              // as embedded, but without metadata; "" for a bitmap
  cv::Mat bitmap;                // CV_8UC3, blue first
  std::int32_t orientation = 1;  // EXIF code of the preview's pixels
  bool is_srgb = true;           // unless it states otherwise
};

// Throws Failure: LUMVIK_HOST_UNSUPPORTED without a preview. `what` was attempted.
RawPreview ReadRawPreview(const std::string& path, const std::string& what);

// The pixels of a preview in sRGB, upright: CV_8UC3, blue first. Throws Failure.
cv::Mat DecodePreview(const RawPreview& preview, const std::string& what);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_THUMBNAIL_RAW_PREVIEW_H_
