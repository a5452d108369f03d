#include "pipeline/stages/white_balance.h"

#include <algorithm>

#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kReferenceTemperature = 6504.0F;
constexpr float kMinTemperature = 1667.0F;
constexpr float kMaxTemperature = 25000.0F;
constexpr float kGainFloor = 0.01F;
constexpr float kGreenFloor = 0.001F;

void Scale(float* values, int count, float gain) {
  for (int i = 0; i < count; ++i) values[i] = ClampUnit(gain * values[i]);
}

}  // namespace

Chromaticity KelvinToChromaticity(float temperature) {
  const float t = std::max(std::min(temperature, kMaxTemperature), kMinTemperature);
  const float t2 = t * t;
  const float t3 = t2 * t;
  const float x = t <= 4000.0F ? -266123904.0F / t3 - 234358.9F / t2 + 877.6956F / t + 0.17991F
                               : -3025846784.0F / t3 + 2107038.0F / t2 + 222.6347F / t + 0.24039F;
  const float x2 = x * x;
  const float x3 = x2 * x;
  if (t <= 2222.0F) return {x, -1.1063814F * x3 - 1.3481102F * x2 + 2.1855583F * x - 0.20219684F};
  if (t <= 4000.0F) return {x, -0.9549476F * x3 - 1.3741859F * x2 + 2.09137F * x - 0.16748866F};
  return {x, 3.081758F * x3 - 5.873387F * x2 + 3.7511299F * x - 0.37001482F};
}

WhiteBalanceGains ComputeWhiteBalanceGains(float temperature, float tint) {
  const Chromaticity scene = KelvinToChromaticity(temperature);
  const Chromaticity reference = KelvinToChromaticity(kReferenceTemperature);
  // Reference white over scene white in XYZ with Y fixed at 1 is (a, 1, c).
  const float a = (reference.x / reference.y) / (scene.x / scene.y);
  const float c = ((1.0F - reference.x - reference.y) / reference.y) / ((1.0F - scene.x - scene.y) / scene.y);
  // XYZ to linear sRGB, IEC 61966-2-1.
  const float red = std::max(3.2406F * a - 1.5372F - 0.4986F * c, kGainFloor);
  const float green = std::max(std::max(-0.9689F * a + 1.8758F + 0.0415F * c, kGainFloor), kGreenFloor);
  const float blue = std::max(0.0557F * a - 0.204F + 1.057F * c, kGainFloor);
  return {red / green, 1.0F - tint / 150.0F * 0.15F, blue / green};
}

RowTransform WhiteBalance(float temperature, float tint) {
  const WhiteBalanceGains gains = ComputeWhiteBalanceGains(temperature, tint);
  if (gains.red == 1.0F && gains.green == 1.0F && gains.blue == 1.0F) return {};
  return MakeRowTransform([gains](const RowPart& row) {
    Scale(row.red, row.columns, gains.red);
    Scale(row.green, row.columns, gains.green);
    Scale(row.blue, row.columns, gains.blue);
  });
}

}  // namespace lumvik
