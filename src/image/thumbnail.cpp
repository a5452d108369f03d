#include "image/thumbnail.h"

#include <algorithm>
#include <opencv2/imgcodecs.hpp>
#include <vector>

#include "image/image_buffer.h"
#include "image/image_loader.h"

namespace lumvik {
namespace {

constexpr int kThumbnailLongSide = 160;
constexpr int kReducedQuality = 75;
constexpr int kBitmapQuality = 80;
constexpr int kMaxJpegSide = 65500;  // the JPEG library's limit, beyond which OpenCV throws

ThumbnailStatus CopyBytes(const uint8_t* bytes, size_t size, Thumbnail& thumbnail) {
  thumbnail.size = size;
  // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): given to a host, which may be written in C
  thumbnail.data.reset(static_cast<uint8_t*>(std::malloc(size)));
  if (!thumbnail.data) return ThumbnailStatus::kNoMemory;
  std::copy_n(bytes, size, thumbnail.data.get());
  return ThumbnailStatus::kMade;
}

ThumbnailStatus Encode(const cv::Mat& image, int quality, Thumbnail& thumbnail) {
  std::vector<uint8_t> jpeg;
  cv::imencode(".jpg", image, jpeg, {cv::IMWRITE_JPEG_QUALITY, quality});
  return CopyBytes(jpeg.data(), jpeg.size(), thumbnail);
}

ThumbnailStatus FromOrdinaryImage(const std::string& path, Thumbnail& thumbnail) {
  cv::Mat image = ReadImageFileUtf8(path, cv::IMREAD_COLOR);
  if (image.empty()) return ThumbnailStatus::kUnreadable;
  const int long_side = std::max(image.cols, image.rows);
  if (long_side > kThumbnailLongSide) {
    ShrinkImage(image, static_cast<float>(kThumbnailLongSide) / static_cast<float>(long_side));
  }
  return Encode(image, kReducedQuality, thumbnail);
}

ThumbnailStatus FromEmbeddedPreview(const std::string& path, Thumbnail& thumbnail) {
  const EmbeddedPreview preview = ReadEmbeddedPreview(path);
  if (!preview.image) return static_cast<ThumbnailStatus>(preview.status);
  if (preview.delivery_error != 0) return ThumbnailStatus::kPreviewNotDelivered;
  if (preview.image->type == LIBRAW_IMAGE_JPEG) {
    return CopyBytes(preview.image->data, preview.image->data_size, thumbnail);
  }
  // The encoder takes blue first: hosts know these thumbnails with red and blue swapped.
  const cv::Mat bitmap = PreviewBitmap(*preview.image);
  if (bitmap.empty() || std::max(bitmap.cols, bitmap.rows) > kMaxJpegSide) {
    return ThumbnailStatus::kPreviewNotDelivered;
  }
  return Encode(bitmap, kBitmapQuality, thumbnail);
}

}  // namespace

ThumbnailStatus MakeThumbnail(const std::string& path, Thumbnail& thumbnail) {
  return IsStandardImagePath(path) ? FromOrdinaryImage(path, thumbnail)
                                   : FromEmbeddedPreview(path, thumbnail);
}

}  // namespace lumvik
