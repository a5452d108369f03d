#include "image/embedded_preview.h"

#include "image/file_io.h"

namespace lumvik {
namespace {

constexpr size_t kColors = 3;

}  // namespace

EmbeddedPreview ReadEmbeddedPreview(const std::string& path) {
  EmbeddedPreview preview;
  const auto raw = std::make_unique<LibRaw>();  // far too large for the stack
  // Its default handler reports damaged data on the host's standard error.
  raw->set_dataerror_handler(nullptr, nullptr);
  // LibRaw would wait for ever for the other end of a pipe.
  if (ReadingMayBlock(path) || raw->open_file(path.c_str()) != LIBRAW_SUCCESS) return preview;
  preview.status = FileStatus::kNoPreview;
  if (raw->unpack_thumb() != LIBRAW_SUCCESS) return preview;
  preview.image.reset(raw->dcraw_make_mem_thumb(&preview.delivery_error));
  preview.status = preview.image ? FileStatus::kRead : FileStatus::kPreviewNotDelivered;
  return preview;
}

cv::Mat PreviewBitmap(libraw_processed_image_t& preview) {
  if (preview.data_size < kColors * preview.height * preview.width) return {};
  return {preview.height, preview.width, CV_8UC3, preview.data};
}

}  // namespace lumvik
