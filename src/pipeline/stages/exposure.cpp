#include "pipeline/stages/exposure.h"

#include <cmath>

#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kKnee = 0.75F;
constexpr float kUpperKnee = 0.75F;
constexpr float kShoulderNumerator = 0.0625F;
constexpr float kShoulderOffset = -0.5F;
constexpr float kBlendSoftness = 1.5F;

float Floored(float value) {
  return value < kUnitBounds.min ? kUnitBounds.min : value;
}
float Ceiled(float value) {
  return value > kUnitBounds.max ? kUnitBounds.max : value;
}

// Continues the identity at the knee with slope 1 and tends to 1.
float Shoulder(float peak) {
  return kUpperKnee >= peak ? peak : 1.0F - kShoulderNumerator / (peak + kShoulderOffset);
}

// Both cases are computed for every pixel: a loop without branches vectorizes.
void ExposeRow(const RowPart& row, float gain) {
  for (int i = 0; i < row.columns; ++i) {
    const float r = Floored(gain * row.red[i]);
    const float g = Floored(gain * row.green[i]);
    const float b = Floored(gain * row.blue[i]);
    const float rg = r < g ? g : r;
    const float peak = rg < b ? b : rg;
    // Below the knee the scale is exactly 1 and the blend 0, so that every bit is kept.
    const bool beyond_knee = peak > kKnee;
    const float level = Shoulder(peak);
    const float scale = beyond_knee ? level / peak : 1.0F;
    const float excess = peak - kKnee;
    const float gray = beyond_knee ? excess / (excess + kBlendSoftness) : 0.0F;
    const auto rolled_off = [=](float value) {
      const float scaled = scale * value;
      return Ceiled((level - scaled) * gray + scaled);
    };
    row.red[i] = rolled_off(r);
    row.green[i] = rolled_off(g);
    row.blue[i] = rolled_off(b);
  }
}

}  // namespace

RowTransform Exposure(float exposure) {
  const float gain = std::pow(2.0F, exposure);
  return MakeRowTransform([gain](const RowPart& row) { ExposeRow(row, gain); });
}

}  // namespace lumvik
