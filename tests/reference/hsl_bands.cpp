#include "reference/hsl_bands.h"

#include <algorithm>
#include <cmath>

#include "reference/clamp.h"
#include "reference/hsl_color.h"

namespace lumvik::reference {
namespace {

constexpr std::array<float, kHslBandCount> kBandCenters = {
    0.0F, 1.0F / 12.0F, 1.0F / 6.0F, 1.0F / 3.0F, 1.0F / 2.0F, 2.0F / 3.0F, 7.0F / 9.0F, 5.0F / 6.0F};
constexpr float kBandRadius = 0.09F;
constexpr float kMinSaturation = 0.0001F;
constexpr float kMinWeight = 0.0001F;

bool IsUnshifted(const HslBand& band) {
  return band.hue == 0 && band.saturation == 0 && band.luminance == 0;
}

// 1 at the center of the band, 0 from kBandRadius on.
float BandWeight(float hue, size_t band) {
  float distance = std::fabs(hue - kBandCenters[band]);
  if (distance > 0.5F) distance = 1.0F - distance;
  return distance < kBandRadius ? 1.0F - distance / kBandRadius : 0.0F;
}

void ShiftPixel(cv::Vec4f& pixel, const std::array<HslBand, kHslBandCount>& bands) {
  const Hsl hsl = rgb_to_hsl(pixel[0], pixel[1], pixel[2]);
  if (hsl.s < kMinSaturation) return;
  float weight = 0;
  HslBand shift;
  // The sums are not divided by the total weight.
  for (size_t i = 0; i < bands.size(); ++i) {
    const float w = BandWeight(hsl.h, i);
    if (!(w >= kMinWeight)) continue;
    weight += w;
    shift.hue += w * bands[i].hue;
    shift.saturation += w * bands[i].saturation;
    shift.luminance += w * bands[i].luminance;
  }
  if (weight < kMinWeight) return;
  const float h = fmodf(hsl.h + shift.hue / 360.0F + 2.0F, 1.0F);
  const float s = ClampUnit((shift.saturation / 100.0F + 1.0F) * hsl.s);
  const float l = ClampUnit(hsl.l + shift.luminance / 200.0F);
  const Rgb rgb = hsl_to_rgb(h, s, l);
  pixel[0] = rgb.r;
  pixel[1] = rgb.g;
  pixel[2] = rgb.b;
}

}  // namespace

void HslBands(cv::Mat& working, const Adjustments& adjustments) {
  if (std::all_of(adjustments.hsl.begin(), adjustments.hsl.end(), IsUnshifted)) return;
  for (int y = 0; y < working.rows; ++y) {
    auto* row = working.ptr<cv::Vec4f>(y);
    for (int x = 0; x < working.cols; ++x) ShiftPixel(row[x], adjustments.hsl);
  }
}

}  // namespace lumvik::reference
