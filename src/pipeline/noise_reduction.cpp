#include "pipeline/noise_reduction.h"

#include <opencv2/imgproc.hpp>

#include "image/luminance.h"
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

void ReduceLuminanceNoise(cv::Mat& working, float percent) {
  const cv::Mat luminance = LuminancePlane(working);
  cv::Mat smooth;
  cv::GaussianBlur(luminance, smooth, KernelSize(percent, kLuminanceKernelSteps), 0);
  const float weight = percent / 100.0F * kLuminanceStrength;
  ForEachRow(working.rows, [&](int y) {
    auto* pixels = working.ptr<float>(y);
    const auto* noisy = luminance.ptr<float>(y);
    const auto* soft = smooth.ptr<float>(y);
    for (int x = 0; x < working.cols; ++x) {
      const float ratio = soft[x] / (noisy[x] + kMinLuminance);
      for (int c = 0; c < kColors; ++c) {
        float& value = pixels[x * kChannels + c];
        value = value * (1.0F - weight) + value * ratio * weight;
      }
    }
  });
}

void ReduceColorNoise(cv::Mat& working, float percent) {
  const cv::Size kernel = KernelSize(percent, kColorKernelSteps);
  for (int c = 0; c < kColors; ++c) {
    cv::Mat plane = ColorPlane(working, c);
    cv::GaussianBlur(plane, plane, kernel, 0);
    cv::insertChannel(plane, working, c);
  }
}

}  // namespace

void NoiseReduction(cv::Mat& working, float luminance, float color) {
  if (luminance > 0.0F) ReduceLuminanceNoise(working, luminance);
  if (color > 0.0F) ReduceColorNoise(working, color);
}

}  // namespace lumvik
