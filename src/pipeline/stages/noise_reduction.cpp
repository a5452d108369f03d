#include "pipeline/stages/noise_reduction.h"

#include <algorithm>
#include <cmath>

#include "base/luminance.h"

namespace lumvik {
namespace {

constexpr float kLuminanceKernelSteps = 5.0F;
constexpr float kColorKernelSteps = 4.0F;
constexpr float kLuminanceStrength = 0.6F;
constexpr float kLeastLuminance = 1e-6F;
constexpr int kMinKernelSize = 3;
constexpr float kMostWidening = 1 << 20;

// The smallest window stands for one that is not finite or wider than any picture by far.
int KernelSize(float percent, float steps) {
  const float narrower = percent / -100.0F * steps;
  if (!(std::abs(narrower) < kMostWidening)) return kMinKernelSize;
  return kMinKernelSize - 2 * static_cast<int>(narrower);
}

void PullToBlur(const PixelRow& row, const float* smooth, float weight) {
  for (int i = 0; i < row.columns; ++i) {
    const float ratio = smooth[i] / (Luminance(row.red[i], row.green[i], row.blue[i]) + kLeastLuminance);
    const auto pulled = [=](float value) { return value * (1.0F - weight) + value * ratio * weight; };
    row.red[i] = pulled(row.red[i]);
    row.green[i] = pulled(row.green[i]);
    row.blue[i] = pulled(row.blue[i]);
  }
}

}  // namespace

AreaKernel LuminanceNoiseReduction(float percent) {
  const float weight = percent / 100.0F * kLuminanceStrength;
  return BesideBlurredLuminance(
      GaussianKernel(KernelSize(percent, kLuminanceKernelSteps)),
      [weight](const PixelRow& row, const float* smooth) { PullToBlur(row, smooth, weight); });
}

AreaKernel ColorNoiseReduction(float percent) {
  return BesideBlurredColors(
      GaussianKernel(KernelSize(percent, kColorKernelSteps)),
      [](const PixelRow& row, const float* red, const float* green, const float* blue) {
        std::copy_n(red, row.columns, row.red);
        std::copy_n(green, row.columns, row.green);
        std::copy_n(blue, row.columns, row.blue);
      });
}

}  // namespace lumvik
