#include "pipeline/contrast.h"

#include <algorithm>
#include <cmath>

#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kMiddle = 0.5F;
constexpr float kSlopePerUnit = 0.8F;
constexpr float kMinSlope = 0.2F;
constexpr float kRollOff = 0.4F;

void Bend(float* values, int count, float slope) {
  for (int i = 0; i < count; ++i) {
    const float t = (values[i] - kMiddle) * slope;
    values[i] = ClampUnit(t / (std::fabs(t) * kRollOff + 1.0F) + kMiddle);
  }
}

}  // namespace

RowKernel Contrast(float contrast) {
  if (contrast == 0.0F) return {};
  const float slope = std::max(contrast / 100.0F * kSlopePerUnit + 1.0F, kMinSlope);
  return [slope](const PixelRow& row) {
    Bend(row.red, row.columns, slope);
    Bend(row.green, row.columns, slope);
    Bend(row.blue, row.columns, slope);
  };
}

}  // namespace lumvik
