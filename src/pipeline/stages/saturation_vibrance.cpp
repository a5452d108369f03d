#include "pipeline/stages/saturation_vibrance.h"

#include <algorithm>

#include "base/luminance.h"
#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kColorfulnessScale = 3.0F;
constexpr float kVibranceStrength = 0.8F;

// A setting of 0 keeps every bit, and costs nothing.
template <bool kSaturation, bool kVibrance>
void Stretch(const RowPart& row, float saturation, float vibrance) {
  for (int i = 0; i < row.columns; ++i) {
    float r = row.red[i];
    float g = row.green[i];
    float b = row.blue[i];
    const float spread = std::max(std::max(r, g), b) - std::min(std::min(r, g), b);
    const auto stretch = [&r, &g, &b](float factor) {
      const float luminance = Luminance(r, g, b);
      r = ClampUnit((r - luminance) * factor + luminance);
      g = ClampUnit((g - luminance) * factor + luminance);
      b = ClampUnit((b - luminance) * factor + luminance);
    };
    if constexpr (kSaturation) stretch(saturation + 1.0F);
    if constexpr (kVibrance) {
      const float colorfulness = ClampUnit(spread * kColorfulnessScale);
      stretch((1.0F - colorfulness) * vibrance * kVibranceStrength + 1.0F);
    }
    row.red[i] = r;
    row.green[i] = g;
    row.blue[i] = b;
  }
}

}  // namespace

RowTransform SaturationVibrance(float saturation, float vibrance) {
  const float s = saturation / 100.0F;
  const float v = vibrance / 100.0F;
  if (v == 0.0F) return MakeRowTransform([=](const RowPart& row) { Stretch<true, false>(row, s, v); });
  if (s == 0.0F) return MakeRowTransform([=](const RowPart& row) { Stretch<false, true>(row, s, v); });
  return MakeRowTransform([=](const RowPart& row) { Stretch<true, true>(row, s, v); });
}

}  // namespace lumvik
