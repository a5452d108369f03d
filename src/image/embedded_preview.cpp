#include "image/embedded_preview.h"

#include "image/guarded_libraw.h"

namespace lumvik {
namespace {

constexpr size_t kBitmapColors = 3;

}  // namespace

EmbeddedPreview ReadEmbeddedPreview(const std::string& path) {
  EmbeddedPreview preview;
  const auto raw = std::make_unique<GuardedLibRaw>();
  if (raw->OpenFile(path) != LIBRAW_SUCCESS) return preview;
  preview.status = PreviewStatus::kNone;
  if (raw->UnpackPreview() != LIBRAW_SUCCESS) return preview;
  preview.image.reset(raw->dcraw_make_mem_thumb(&preview.delivery_error));
  preview.status = preview.image ? PreviewStatus::kRead : PreviewStatus::kNotDelivered;
  return preview;
}

cv::Mat PreviewBitmap(libraw_processed_image_t& preview) {
  if (preview.data_size < kBitmapColors * preview.height * preview.width) return {};
  return {preview.height, preview.width, CV_8UC3, preview.data};
}

}  // namespace lumvik
