#include "analysis/preview.h"

#include <algorithm>
#include <cstring>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include "base/rounding.h"
#include "base/vectorized.h"

namespace lumvik {
namespace {

constexpr int kMinKernelSize = 3;
constexpr int kMaxKernelSize = 61;
constexpr int kRgba = 4;
constexpr float kToWeight = static_cast<float>(1.0 / 255.0);

cv::Mat Stretched(const cv::Mat& mask, cv::Size size) {
  if (mask.size() == size) return mask;
  cv::Mat stretched;
  cv::resize(mask, stretched, size, 0, 0, cv::INTER_LINEAR);
  return stretched;
}

bool IsOpaque(const cv::Mat& rgba) {
  cv::Mat alpha;
  cv::extractChannel(rgba, alpha, 3);
  return cv::countNonZero(alpha == 255) == static_cast<int>(alpha.total());
}

// Blurring leaves opaque alpha as it is, so it is left out, which saves a quarter of the work.
cv::Mat BlurredRgba(const cv::Mat& rgba, int kernel_size) {
  cv::Mat image = rgba;
  if (IsOpaque(rgba)) cv::cvtColor(rgba, image, cv::COLOR_RGBA2RGB);
  cv::Mat blurred;
  cv::GaussianBlur(image, blurred, cv::Size(kernel_size, kernel_size), 0, 0, cv::BORDER_REFLECT_101);
  return blurred;
}

// The mask is the opacity of the sharp image over the blurred one.
template <int channels>
void BlendRow(const uint8_t* mask, const uint8_t* blurred, uint8_t* rgba, int columns) {
  for (int x = 0; x < columns; ++x) {
    const float subject = static_cast<float>(mask[x]) * kToWeight;
    const float background = 1.0F - subject;
    for (int c = 0; c < channels; ++c) {
      const auto sharp = static_cast<float>(rgba[kRgba * x + c]);
      const auto soft = static_cast<float>(blurred[channels * x + c]);
      rgba[kRgba * x + c] = static_cast<uint8_t>(RoundToCode(sharp * subject + soft * background));
    }
  }
}

template <int channels>
void BlendRows(const cv::Mat& mask, const cv::Mat& blurred, cv::Mat& rgba) {
  const int columns = rgba.cols;
  cv::parallel_for_(cv::Range(0, rgba.rows), [&](const cv::Range& range) {
    for (int y = range.start; y < range.end; ++y) {
      const uint8_t* mask_row = mask.ptr(y);
      const uint8_t* blurred_row = blurred.ptr(y);
      uint8_t* rgba_row = rgba.ptr(y);
      Vectorized([=] { BlendRow<channels>(mask_row, blurred_row, rgba_row, columns); });
    }
  });
}

void Blend(const cv::Mat& mask, const cv::Mat& blurred, cv::Mat& rgba) {
  const auto blend = blurred.channels() == kRgba ? BlendRows<kRgba> : BlendRows<kRgba - 1>;
  blend(mask, blurred, rgba);
}

}  // namespace

int BackgroundBlurKernelSize(float bg_blur) {
  const int size = static_cast<int>(bg_blur / 100.0F * static_cast<float>(kMaxKernelSize)) | 1;
  return std::clamp(size, kMinKernelSize, kMaxKernelSize);
}

void RenderPreview(const ImageBuffer& rendered, const cv::Mat& mask, float bg_blur, cv::Mat& preview) {
  ToRgba8(rendered, preview);
  if (mask.empty() || !(bg_blur > 0)) return;
  Blend(Stretched(mask, preview.size()), BlurredRgba(preview, BackgroundBlurKernelSize(bg_blur)), preview);
}

}  // namespace lumvik
