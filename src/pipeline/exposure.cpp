#include "pipeline/exposure.h"

#include <cmath>

namespace lumvik {
namespace {

constexpr float kKnee = 0.75F;
constexpr float kUpperKnee = 0.75F;
constexpr float kShoulderNumerator = 0.0625F;
constexpr float kShoulderOffset = -0.5F;
constexpr float kBlendSoftness = 1.5F;
constexpr float kCeiling = 1.0F;
constexpr float kFloor = 0.0F;

float Floored(float value) {
  return value < kFloor ? kFloor : value;
}
float Ceiled(float value) {
  return kCeiling < value ? kCeiling : value;
}

// Meets the identity at the knee with slope 1 and tends to 1.
float Shoulder(float peak) {
  return kUpperKnee >= peak ? peak : kCeiling - kShoulderNumerator / (peak + kShoulderOffset);
}

// Both outcomes are computed for every pixel and one is chosen: a loop without branches vectorises.
void ExposeRow(const PixelRow& row, float gain) {
  for (int i = 0; i < row.columns; ++i) {
    const float r = Floored(gain * row.red[i]);
    const float g = Floored(gain * row.green[i]);
    const float b = Floored(gain * row.blue[i]);
    const float rg = r < g ? g : r;
    const float peak = rg < b ? b : rg;
    const float level = Shoulder(peak);
    const float scale = level / peak;
    const float excess = peak - kKnee;
    const float grey = excess / (excess + kBlendSoftness);
    const auto rolled_off = [=](float value) {
      const float scaled = scale * value;
      return (level - scaled) * grey + scaled;
    };
    const bool beyond_knee = peak > kKnee;
    row.red[i] = Ceiled(beyond_knee ? rolled_off(r) : r);
    row.green[i] = Ceiled(beyond_knee ? rolled_off(g) : g);
    row.blue[i] = Ceiled(beyond_knee ? rolled_off(b) : b);
  }
}

}  // namespace

RowKernel Exposure(float exposure) {
  if (exposure == 0.0F) return {};
  const float gain = std::pow(2.0F, exposure);
  return MakeRowKernel([gain](const PixelRow& row) { ExposeRow(row, gain); });
}

}  // namespace lumvik
