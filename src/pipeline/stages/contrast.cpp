#include "pipeline/stages/contrast.h"

#include <algorithm>
#include <cmath>

#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kMiddle = 0.5F;
constexpr float kSlopePerUnit = 0.8F;
constexpr float kMinSlope = 0.2F;
constexpr float kRollOff = 0.4F;

}  // namespace

RowTransform Contrast(float contrast) {
  const float slope = std::max(contrast / 100.0F * kSlopePerUnit + 1.0F, kMinSlope);
  return EachValue([slope](float value) {
    const float t = (value - kMiddle) * slope;
    return ClampUnit(t / (std::fabs(t) * kRollOff + 1.0F) + kMiddle);
  });
}

}  // namespace lumvik
