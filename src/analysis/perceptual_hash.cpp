#include "analysis/perceptual_hash.h"

#include <algorithm>
#include <array>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <tuple>
#include <vector>

#include "image/image_buffer.h"
#include "image/image_loader.h"

namespace lumvik {
namespace {

constexpr int kReducedLongSide = 256;
constexpr int kTransformSide = 32;
constexpr int kHashSide = 8;

using Frequencies = std::array<float, size_t{kHashSide} * kHashSide>;

Frequencies LowestFrequencies(const cv::Mat& gray) {
  cv::Mat small;
  cv::resize(gray, small, cv::Size(kTransformSide, kTransformSide), 0, 0, cv::INTER_AREA);
  small.convertTo(small, CV_32F);
  cv::dct(small, small);
  Frequencies lowest{};
  for (int y = 0; y < kHashSide; ++y) {
    std::copy_n(small.ptr<float>(y), kHashSide, lowest.begin() + std::ptrdiff_t{y} * kHashSide);
  }
  return lowest;
}

// Without the first, the mean brightness, which is far from all others.
float MedianOfPatterns(Frequencies frequencies) {
  constexpr size_t kPatterns = std::tuple_size_v<Frequencies> - 1;
  float* const patterns = frequencies.data() + 1;
  std::nth_element(patterns, patterns + kPatterns / 2, patterns + kPatterns);
  return patterns[kPatterns / 2];
}

// Empty if the preview cannot be decoded.
cv::Mat GrayPreview(libraw_processed_image_t& preview) {
  if (preview.type == LIBRAW_IMAGE_JPEG) {
    return DecodeImage({preview.data, preview.data + preview.data_size}, cv::IMREAD_GRAYSCALE);
  }
  cv::Mat gray;
  const cv::Mat bitmap = PreviewBitmap(preview);
  if (!bitmap.empty()) cv::cvtColor(bitmap, gray, cv::COLOR_RGB2GRAY);
  return gray;
}

HashStatus ReadGray(const std::string& path, cv::Mat& gray) {
  if (!IsStandardImagePath(path)) {
    const EmbeddedPreview preview = ReadEmbeddedPreview(path);
    if (!preview.image) return static_cast<HashStatus>(preview.status);
    gray = GrayPreview(*preview.image);
    return gray.empty() ? HashStatus::kPreviewUndecodable : HashStatus::kHashed;
  }
  gray = ReadImageFileUtf8(path, cv::IMREAD_GRAYSCALE);
  if (gray.empty()) return HashStatus::kUnreadable;
  const int long_side = std::max(gray.cols, gray.rows);
  if (long_side > kReducedLongSide) {
    ShrinkImage(gray, static_cast<float>(kReducedLongSide) / static_cast<float>(long_side));
  }
  return HashStatus::kHashed;
}

}  // namespace

uint64_t PerceptualHash(const cv::Mat& gray) {
  const Frequencies frequencies = LowestFrequencies(gray);
  const float median = MedianOfPatterns(frequencies);
  uint64_t hash = 0;
  for (const float frequency : frequencies) hash = hash << 1U | (frequency > median ? 1U : 0U);
  return hash;
}

HashStatus PerceptualHashOfFile(const std::string& path, uint64_t& hash) {
  cv::Mat gray;
  const HashStatus status = ReadGray(path, gray);
  if (status == HashStatus::kHashed) hash = PerceptualHash(gray);
  return status;
}

}  // namespace lumvik
