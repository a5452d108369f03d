#include "pipeline/stages/sharpening.h"

#include <cmath>

#include "base/code_scale.h"
#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kFullAmount = 150.0F;

// The mask is a factor, not a choice: 0 times a gain that is not finite is NaN, which ends as black.
void SharpenPlane(float* __restrict values, const float* blurred, int count, float gain, float threshold) {
  for (int i = 0; i < count; ++i) {
    const float detail = values[i] - blurred[i];
    const float mask = std::fabs(detail) > threshold ? 1.0F : 0.0F;
    values[i] = SaturateUnit(values[i] + detail * mask * gain);
  }
}

}  // namespace

AreaTransform Sharpening(float amount, float radius, float threshold) {
  const float gain = amount / kFullAmount;
  const float min_detail = threshold / kMaxCode;
  return NextToBlurredColors(
      Gaussian::OfSigma(static_cast<double>(radius)),
      [=](const RowPart& part, const float* red, const float* green, const float* blue) {
        SharpenPlane(part.red, red, part.columns, gain, min_detail);
        SharpenPlane(part.green, green, part.columns, gain, min_detail);
        SharpenPlane(part.blue, blue, part.columns, gain, min_detail);
      });
}

}  // namespace lumvik
