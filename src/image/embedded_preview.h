// The preview image that a camera embeds in its RAW files.
#ifndef LUMVIK_IMAGE_EMBEDDED_PREVIEW_H_
#define LUMVIK_IMAGE_EMBEDDED_PREVIEW_H_

#include <libraw/libraw.h>

#include <memory>
#include <opencv2/core.hpp>
#include <string>

namespace lumvik {

enum class PreviewStatus { kRead = 0, kUnreadable = -1, kNone = -2, kNotDelivered = -3 };

struct MemoryImageDeleter {
  void operator()(libraw_processed_image_t* image) const { LibRaw::dcraw_clear_mem(image); }
};

struct EmbeddedPreview {
  PreviewStatus status = PreviewStatus::kUnreadable;
  int delivery_error = 0;  // LibRaw's code for kNotDelivered
  // A JPEG file or a bitmap; null unless the status is kRead.
  std::unique_ptr<libraw_processed_image_t, MemoryImageDeleter> image;
};

// Does not read the sensor's data.
EmbeddedPreview ReadEmbeddedPreview(const std::string& path);

// The bitmap as CV_8UC3 in R, G, B order, sharing the preview's memory. LibRaw describes every bitmap as
// three 8-bit colors, whatever the file holds: empty when it has too few bytes for that.
cv::Mat PreviewBitmap(libraw_processed_image_t& preview);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_EMBEDDED_PREVIEW_H_
