#include "pipeline/stages/hsl_bands.h"

#include <algorithm>
#include <cmath>

#include "pipeline/stages/hsl_color.h"

namespace lumvik {
namespace {

// Red, orange, yellow, green, aqua, blue, purple, magenta, in turns.
constexpr std::array<float, kHslBandCount> kCenters = {0.0F,        1.0F / 12.0F, 1.0F / 6.0F, 1.0F / 3.0F,
                                                       1.0F / 2.0F, 2.0F / 3.0F,  7.0F / 9.0F, 5.0F / 6.0F};
constexpr float kHalfWidth = 0.09F;
constexpr float kMinWeight = 0.0001F;
constexpr float kMinSaturation = 0.0001F;

using Bands = std::array<HslBand, kHslBandCount>;

// For each pixel of a part: its color, and the sum of all shifts at its hue, weighted but not normalized.
struct Part {
  float hue[kMaxPart];
  float saturation[kMaxPart];
  float lightness[kMaxPart];
  float weight[kMaxPart];
  float hue_shift[kMaxPart];
  float saturation_shift[kMaxPart];
  float luminance_shift[kMaxPart];
};

void SplitColors(const RowPart& row, Part& part) {
  for (int i = 0; i < row.columns; ++i) {
    const HslColor color = rgb_to_hsl(row.red[i], row.green[i], row.blue[i]);
    part.hue[i] = color.h;
    part.saturation[i] = color.s;
    part.lightness[i] = color.l;
  }
}

void AddBands(const Bands& bands, int columns, Part& part) {
  for (int i = 0; i < columns; ++i) {
    float sum = 0;
    HslBand shift;
    for (size_t band = 0; band < kHslBandCount; ++band) {
      const float apart = std::fabs(part.hue[i] - kCenters[band]);
      const float distance = std::min(apart, 1.0F - apart);
      const float weight = 1.0F - distance * (1.0F / kHalfWidth);
      const bool covered = weight >= kMinWeight;
      sum += Choose(covered, weight, 0.0F);
      shift.hue += Choose(covered, weight * bands[band].hue, 0.0F);
      shift.saturation += Choose(covered, weight * bands[band].saturation, 0.0F);
      shift.luminance += Choose(covered, weight * bands[band].luminance, 0.0F);
    }
    part.weight[i] = sum;
    part.hue_shift[i] = shift.hue;
    part.saturation_shift[i] = shift.saturation;
    part.luminance_shift[i] = shift.luminance;
  }
}

void ShiftColors(const Part& part, const RowPart& row) {
  for (int i = 0; i < row.columns; ++i) {
    const float h = FractionOf(part.hue[i] + part.hue_shift[i] * (1.0F / 360.0F) + 2.0F);
    const float s = ClampUnit((part.saturation_shift[i] * (1.0F / 100.0F) + 1.0F) * part.saturation[i]);
    const float l = ClampUnit(part.lightness[i] + part.luminance_shift[i] * (1.0F / 200.0F));
    const RgbColor rgb = hsl_to_rgb(h, s, l);
    const bool shifted = part.saturation[i] >= kMinSaturation && part.weight[i] >= kMinWeight;
    row.red[i] = Choose(shifted, rgb.r, row.red[i]);
    row.green[i] = Choose(shifted, rgb.g, row.green[i]);
    row.blue[i] = Choose(shifted, rgb.b, row.blue[i]);
  }
}

void ShiftRow(const RowPart& row, const Bands& bands) {
  Part part;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled by the next line, as far as it is read
  SplitColors(row, part);
  AddBands(bands, row.columns, part);
  ShiftColors(part, row);
}

}  // namespace

bool HasShift(const Bands& bands) {
  return std::any_of(bands.begin(), bands.end(), [](const HslBand& band) {
    return band.hue != 0.0F || band.saturation != 0.0F || band.luminance != 0.0F;
  });
}

RowTransform HslBands(const Bands& bands) {
  return MakeRowTransform([bands](const RowPart& row) { ShiftRow(row, bands); });
}

}  // namespace lumvik
