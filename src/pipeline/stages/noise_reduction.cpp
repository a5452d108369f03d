#include "pipeline/stages/noise_reduction.h"

#include <algorithm>
#include <cmath>

#include "base/luminance.h"

namespace lumvik {
namespace {

constexpr float kLuminanceKernelSteps = 5.0F;
constexpr float kColorKernelSteps = 4.0F;
constexpr float kLuminanceStrength = 0.6F;
constexpr float kMinDivisor = 1e-6F;
constexpr int kMinKernelSize = 3;

// Truncation of what does not fit gives INT_MIN, whose double wraps to 0.
int KernelSize(float percent, float steps) {
  constexpr auto kLimit = static_cast<float>(1 << 30);
  const float narrower = percent / -100.0F * steps;
  if (!(std::abs(narrower) < kLimit)) return kMinKernelSize;
  return kMinKernelSize - 2 * static_cast<int>(narrower);
}

void PullToBlur(const RowPart& row, const float* smooth, float weight) {
  for (int i = 0; i < row.columns; ++i) {
    const float ratio = smooth[i] / (Luminance(row.red[i], row.green[i], row.blue[i]) + kMinDivisor);
    const auto pulled = [=](float value) { return value * (1.0F - weight) + value * ratio * weight; };
    row.red[i] = pulled(row.red[i]);
    row.green[i] = pulled(row.green[i]);
    row.blue[i] = pulled(row.blue[i]);
  }
}

}  // namespace

AreaTransform LuminanceNoiseReduction(float percent) {
  const float weight = percent / 100.0F * kLuminanceStrength;
  return NextToBlurredLuminance(
      Gaussian::OfSize(KernelSize(percent, kLuminanceKernelSteps)),
      [weight](const RowPart& row, const float* smooth) { PullToBlur(row, smooth, weight); });
}

AreaTransform ColorNoiseReduction(float percent) {
  return NextToBlurredColors(Gaussian::OfSize(KernelSize(percent, kColorKernelSteps)),
                             [](const RowPart& row, const float* red, const float* green, const float* blue) {
                               std::copy_n(red, int{row.columns}, row.red);
                               std::copy_n(green, int{row.columns}, row.green);
                               std::copy_n(blue, int{row.columns}, row.blue);
                             });
}

}  // namespace lumvik
