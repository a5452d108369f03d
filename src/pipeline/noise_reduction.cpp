#include "pipeline/noise_reduction.h"

#include "image/luminance.h"
#include "pipeline/gaussian_blur.h"
#include "pipeline/working_image.h"

namespace lumvik {
namespace {

constexpr float kLuminanceKernelSteps = 5.0F;
constexpr float kColorKernelSteps = 4.0F;
constexpr float kLuminanceStrength = 0.6F;
constexpr float kMinLuminance = 1e-6F;

cv::Size KernelSize(float percent, float steps) {
  const int side = 3 - 2 * static_cast<int>(percent / -100.0F * steps);
  return {side, side};
}

void PullToBlur(const PixelRow& row, const float* smooth, float weight) {
  for (int i = 0; i < row.columns; ++i) {
    const float ratio = smooth[i] / (Luminance(row.red[i], row.green[i], row.blue[i]) + kMinLuminance);
    const auto pulled = [=](float value) { return value * (1.0F - weight) + value * ratio * weight; };
    row.red[i] = pulled(row.red[i]);
    row.green[i] = pulled(row.green[i]);
    row.blue[i] = pulled(row.blue[i]);
  }
}

}  // namespace

RowKernel LuminanceNoiseReduction(const cv::Mat& working, float luminance) {
  const float weight = luminance / 100.0F * kLuminanceStrength;
  return MakeRowKernel(
      [weight](const PixelRow& row, const float* smooth) { PullToBlur(row, smooth, weight); },
      GaussianBlurred(LuminancePlane(working), KernelSize(luminance, kLuminanceKernelSteps)));
}

RowKernel ColorNoiseReduction(const cv::Mat& working, float color) {
  const cv::Size kernel = KernelSize(color, kColorKernelSteps);
  std::array<cv::Mat, kColors> planes = ColorPlanes(working);
  for (cv::Mat& plane : planes) plane = GaussianBlurred(plane, kernel);
  return MakeRowKernel(
      [](const PixelRow& row, const float* red, const float* green, const float* blue) {
        std::copy_n(red, row.columns, row.red);
        std::copy_n(green, row.columns, row.green);
        std::copy_n(blue, row.columns, row.blue);
      },
      planes[0], planes[1], planes[2]);
}

}  // namespace lumvik
