#include "pipeline/stages/split_toning.h"

#include "base/luminance.h"
#include "pipeline/pixel_math.h"
#include "pipeline/stages/hsl_color.h"

namespace lumvik {
namespace {

constexpr float kBalanceScale = 0.3F;
constexpr float kSaturationStrength = 0.3F;
constexpr float kHueStrength = 0.5F;

// Hues in turns, the rest as fractions.
struct Tones {
  float highlight_hue;
  float highlight_saturation;
  float shadow_hue;
  float shadow_saturation;
  float balance;
};

void ToneRow(const RowPart& row, const Tones& tones) {
  for (int i = 0; i < row.columns; ++i) {
    const float luminance = Luminance(row.red[i], row.green[i], row.blue[i]);
    const float highlight = ClampUnit(luminance + tones.balance);
    const float shadow = ClampUnit(1.0F - luminance - tones.balance);
    const HslColor color = rgb_to_hsl(row.red[i], row.green[i], row.blue[i]);
    const float strength = shadow * tones.shadow_saturation + highlight * tones.highlight_saturation;
    const float target = shadow * tones.shadow_hue + highlight * tones.highlight_hue;
    const float s = ClampUnit(strength * kSaturationStrength + color.s);
    const float h = color.h + (target - color.h) * (strength * kHueStrength);
    const RgbColor rgb = hsl_to_rgb(h, s, color.l);
    row.red[i] = rgb.r;
    row.green[i] = rgb.g;
    row.blue[i] = rgb.b;
  }
}

}  // namespace

RowTransform SplitToning(const SplitToningSettings& settings) {
  const Tones tones = {settings.highlight_hue / 360.0F, settings.highlight_saturation / 100.0F,
                       settings.shadow_hue / 360.0F, settings.shadow_saturation / 100.0F,
                       settings.balance / 100.0F * kBalanceScale};
  return MakeRowTransform([tones](const RowPart& row) { ToneRow(row, tones); });
}

}  // namespace lumvik
