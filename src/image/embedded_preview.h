// The preview picture that a camera puts into its RAW files.
#ifndef LUMVIK_IMAGE_EMBEDDED_PREVIEW_H_
#define LUMVIK_IMAGE_EMBEDDED_PREVIEW_H_

#include <libraw/libraw.h>

#include <memory>
#include <opencv2/core.hpp>
#include <string>

namespace lumvik {

// What became of reading a file by its path alone: the status codes of the exported functions that do.
enum class FileStatus {
  kRead = 0,
  kUnreadable = -1,
  kNoPreview = -2,
  kPreviewNotDelivered = -3,
  kNoMemory = -4,            // of a thumbnail
  kPreviewUndecodable = -4,  // of a hash
};

struct MemoryImageDeleter {
  void operator()(libraw_processed_image_t* image) const { LibRaw::dcraw_clear_mem(image); }
};

struct EmbeddedPreview {
  FileStatus status = FileStatus::kUnreadable;  // at which stage LibRaw gave up, or kRead
  int delivery_error = 0;                       // LibRaw's, of the stage kPreviewNotDelivered
  // A JPEG file or a bitmap; null unless the status is kRead.
  std::unique_ptr<libraw_processed_image_t, MemoryImageDeleter> image;
};

// Takes the preview out of a RAW file; the sensor's data stays where it is.
EmbeddedPreview ReadEmbeddedPreview(const std::string& path);

// The bitmap as CV_8UC3 in R, G, B order, sharing the preview's memory. LibRaw tells of no other layout than
// three colors of 8 bits, though a file may hold one: empty when there are too few bytes for it.
cv::Mat PreviewBitmap(libraw_processed_image_t& preview);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_EMBEDDED_PREVIEW_H_
