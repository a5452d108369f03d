#include "pipeline/hsl_bands.h"

#include <algorithm>
#include <cmath>

#include "pipeline/hsl_color.h"

namespace lumvik {
namespace {

// Red, orange, yellow, green, aqua, blue, purple, magenta, in turns.
constexpr std::array<float, kHslBandCount> kCentres = {0.0F,        1.0F / 12.0F, 1.0F / 6.0F, 1.0F / 3.0F,
                                                       1.0F / 2.0F, 2.0F / 3.0F,  7.0F / 9.0F, 5.0F / 6.0F};
constexpr float kReach = 0.09F;
constexpr float kMinWeight = 0.0001F;
constexpr float kMinSaturation = 0.0001F;

using Bands = std::array<HslBand, kHslBandCount>;

// The sum of all bands' shifts at a hue, each by its weight; the weights are not normalised.
struct Shift {
  float weight = 0;
  HslBand sum;
};

Shift ShiftAt(float hue, const Bands& bands) {
  Shift shift;
  for (size_t band = 0; band < bands.size(); ++band) {
    const float apart = std::fabs(hue - kCentres[band]);
    const float distance = apart > 0.5F ? 1.0F - apart : apart;
    const float weight = 1.0F - distance / kReach;
    if (!(distance < kReach) || !(weight >= kMinWeight)) continue;
    shift.weight += weight;
    shift.sum.hue += weight * bands[band].hue;
    shift.sum.saturation += weight * bands[band].saturation;
    shift.sum.luminance += weight * bands[band].luminance;
  }
  return shift;
}

void ShiftRow(const PixelRow& row, const Bands& bands) {
  for (int i = 0; i < row.columns; ++i) {
    const HslColor color = rgb_to_hsl(row.red[i], row.green[i], row.blue[i]);
    if (color.s < kMinSaturation) continue;
    const Shift shift = ShiftAt(color.h, bands);
    if (shift.weight < kMinWeight) continue;
    const float h = std::fmod(color.h + shift.sum.hue / 360.0F + 2.0F, 1.0F);
    const float s = ClampUnit((shift.sum.saturation / 100.0F + 1.0F) * color.s);
    const float l = ClampUnit(color.l + shift.sum.luminance / 200.0F);
    const RgbColor rgb = hsl_to_rgb(h, s, l);
    row.red[i] = rgb.r;
    row.green[i] = rgb.g;
    row.blue[i] = rgb.b;
  }
}

}  // namespace

RowKernel HslBands(const Bands& bands) {
  const auto sleeps = [](const HslBand& band) {
    return band.hue == 0.0F && band.saturation == 0.0F && band.luminance == 0.0F;
  };
  if (std::all_of(bands.begin(), bands.end(), sleeps)) return {};
  return [bands](const PixelRow& row) { ShiftRow(row, bands); };
}

}  // namespace lumvik
