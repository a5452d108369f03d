#include "pipeline/highlights_shadows.h"

#include <algorithm>

#include "image/luminance.h"
#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kShadowTop = 0.55F;
constexpr float kHighlightBottom = 0.45F;
constexpr float kHighlightRange = 0.55F;
constexpr float kShadowStrength = 1.2F;
constexpr float kHighlightStrength = 0.5F;
constexpr float kMinGamma = 0.3F;
constexpr float kMaxGamma = 3.0F;
constexpr float kMinGain = 0.3F;
constexpr float kMaxGain = 2.0F;
constexpr float kMinLuminance = 1e-6F;

float Lifted(float luminance, float shadows) {
  const float depth = (kShadowTop - luminance) * (1.0F / kShadowTop);
  const float gamma = 1.0F / (depth * depth * shadows * kShadowStrength + 1.0F);
  return FastPow(luminance, std::max(std::min(gamma, kMaxGamma), kMinGamma));
}

float HighlightGain(float luminance, float highlights) {
  const float height = (luminance - kHighlightBottom) * (1.0F / kHighlightRange);
  const float gain = height * height * highlights * kHighlightStrength + 1.0F;
  return std::max(std::min(gain, kMaxGain), kMinGain);
}

void Reshape(const PixelRow& row, float highlights, float shadows) {
  for (int i = 0; i < row.columns; ++i) {
    const float before = Luminance(row.red[i], row.green[i], row.blue[i]);
    const bool in_shadow = shadows != 0.0F && before < kShadowTop;
    const float lifted = in_shadow ? Lifted(before, shadows) : before;
    // The zones overlap; which of them a pixel lies in is decided by its luminance before either acts.
    const bool in_highlight = highlights != 0.0F && before > kHighlightBottom;
    const float after = in_highlight ? ClampUnit(HighlightGain(before, highlights) * lifted) : lifted;
    if (before < kMinLuminance || after == before) continue;
    const float ratio = after / before;
    row.red[i] = ClampUnit(row.red[i] * ratio);
    row.green[i] = ClampUnit(row.green[i] * ratio);
    row.blue[i] = ClampUnit(row.blue[i] * ratio);
  }
}

}  // namespace

RowKernel HighlightsShadows(float highlights, float shadows) {
  if (highlights == 0.0F && shadows == 0.0F) return {};
  return MakeRowKernel(
      [h = highlights / 100.0F, s = shadows / 100.0F](const PixelRow& row) { Reshape(row, h, s); });
}

}  // namespace lumvik
