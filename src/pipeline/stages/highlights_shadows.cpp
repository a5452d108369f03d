#include "pipeline/stages/highlights_shadows.h"

#include "base/luminance.h"
#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kShadowTop = 0.55F;
constexpr float kHighlightBottom = 0.45F;
constexpr float kHighlightRange = 0.55F;
constexpr float kShadowStrength = 1.2F;
constexpr float kHighlightStrength = 0.5F;
constexpr float kMinLuminance = 1e-6F;

struct Zones {
  float highlights;
  float shadows;
  ClampBounds gamma = {0.3F, 3.0F};
  ClampBounds gain = {0.3F, 2.0F};
};

float ShadowGamma(float luminance, const Zones& zones) {
  const float depth = (kShadowTop - luminance) * (1.0F / kShadowTop);
  const float gamma = 1.0F / (depth * depth * zones.shadows * kShadowStrength + 1.0F);
  return Clamp(gamma, zones.gamma);
}

float HighlightGain(float luminance, const Zones& zones) {
  const float height = (luminance - kHighlightBottom) * (1.0F / kHighlightRange);
  const float gain = height * height * zones.highlights * kHighlightStrength + 1.0F;
  return Clamp(gain, zones.gain);
}

// The luminances of a part before the stage, and raised as if all of them were shadows.
struct Luminances {
  float before[kMaxPart];
  float lifted[kMaxPart];
};

template <bool kHighlights, bool kShadows>
void Reshape(const RowPart& row, const Zones& zones) {
  Luminances luminances;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled as far as it is read
  for (int i = 0; i < row.columns; ++i) {
    luminances.before[i] = Luminance(row.red[i], row.green[i], row.blue[i]);
    if constexpr (kShadows) luminances.lifted[i] = luminances.before[i];
  }
  if constexpr (kShadows) {
    RaiseToPower(luminances.lifted, row.columns,
                 [&zones](float luminance) { return ShadowGamma(luminance, zones); });
  }
  for (int i = 0; i < row.columns; ++i) {
    const float before = luminances.before[i];
    float after = before;
    if constexpr (kShadows) after = Choose(before < kShadowTop, luminances.lifted[i], before);
    // The zones overlap; the luminance before either acts decides which of them a pixel is in.
    if constexpr (kHighlights) {
      const float pulled = ClampUnit(HighlightGain(before, zones) * after);
      after = Choose(before > kHighlightBottom, pulled, after);
    }
    const bool reshaped = !(before < kMinLuminance) && after != before;
    const float ratio = reshaped ? after / before : 1.0F;
    row.red[i] = Choose(reshaped, ClampUnit(row.red[i] * ratio), row.red[i]);
    row.green[i] = Choose(reshaped, ClampUnit(row.green[i] * ratio), row.green[i]);
    row.blue[i] = Choose(reshaped, ClampUnit(row.blue[i] * ratio), row.blue[i]);
  }
}

}  // namespace

RowTransform HighlightsShadows(float highlights, float shadows) {
  const Zones zones = {highlights / 100.0F, shadows / 100.0F};
  if (zones.shadows == 0.0F)
    return MakeRowTransform([=](const RowPart& row) { Reshape<true, false>(row, zones); });
  if (zones.highlights == 0.0F)
    return MakeRowTransform([=](const RowPart& row) { Reshape<false, true>(row, zones); });
  return MakeRowTransform([=](const RowPart& row) { Reshape<true, true>(row, zones); });
}

}  // namespace lumvik
