// Hue, saturation and lightness.
#ifndef LUMVIK_PIPELINE_STAGES_HSL_COLOR_H_
#define LUMVIK_PIPELINE_STAGES_HSL_COLOR_H_

#include <algorithm>
#include <cmath>

#include "pipeline/pixel_math.h"

namespace lumvik {

// Hue as a fraction of a turn, 0 red, 1/3 green; saturation and lightness 0..1.
struct HslColor {
  float h;
  float s;
  float l;
};

struct RgbColor {
  float r;
  float g;
  float b;
};

inline constexpr float kSixth = 1.0F / 6.0F;  // divisions dominate the cost of these conversions

// std::fmod(value, 1), which would not vectorize.
inline float FractionOf(float value) {
  return value - std::trunc(value);
}

// Foley, van Dam et al., Computer Graphics: Principles and Practice, section 13.3.5. Gray has hue and
// saturation 0. Free of branches, so that loops over it vectorize.
// NOLINTNEXTLINE(readability-identifier-naming): the established name of this conversion
inline HslColor rgb_to_hsl(float r, float g, float b) {
  constexpr float kGraySpread = 1e-6F;
  const float largest = std::max(std::max(r, g), b);
  const float smallest = std::min(std::min(r, g), b);
  const float spread = largest - smallest;
  const float l = (largest + smallest) * 0.5F;
  const float s = spread / (1.0F - std::fabs(2.0F * l - 1.0F));
  const bool red = largest == r;
  const bool green = largest == g;
  const float beyond_red = green ? b - r : r - g;
  const float primary = red ? 0.0F : (green ? 2.0F : 4.0F);
  const float h = ((red ? g - b : beyond_red) / spread + primary) * kSixth;
  const float hue = h < 0.0F ? h + 1.0F : h;
  const bool gray = spread < kGraySpread;
  return {gray ? 0.0F : hue, gray ? 0.0F : s, l};
}

// Each component is clamped to 0..1. Hues outside 0..1 are not wrapped.
// NOLINTNEXTLINE(readability-identifier-naming): likewise
inline RgbColor hsl_to_rgb(float h, float s, float l) {
  const float chroma = (1.0F - std::fabs(2.0F * l - 1.0F)) * s;
  const float sixths = 6.0F * h;
  const float x = chroma * (1.0F - std::fabs(2.0F * FractionOf(sixths / 2.0F) - 1.0F));
  const float m = l - chroma / 2.0F;
  const float c_m = ClampUnit(chroma + m);
  const float x_m = ClampUnit(x + m);
  const float o_m = ClampUnit(0.0F + m);
  // The sector, -5..5 sixths of a turn. A component peaks in its own two sectors and is lowest opposite them.
  // Distances are compared because a switch over the sectors does not vectorize.
  const float whole = std::trunc(sixths);
  const float sector = whole - 6.0F * std::trunc(whole * kSixth);
  const float from_cyan = std::fabs(sector - 2.5F);
  const float from_green = std::fabs(sector - 1.5F);
  const float from_blue = std::fabs(sector - 3.5F);
  const float red_rest = from_cyan < 2.0F ? x_m : c_m;
  const float green_rest = from_green < 2.0F ? x_m : o_m;
  const float blue_far = from_blue < 4.0F ? o_m : x_m;  // the sectors of negative hues are the furthest
  const float blue_rest = from_blue < 2.0F ? x_m : blue_far;
  return {from_cyan < 1.0F ? o_m : red_rest, from_green < 1.0F ? c_m : green_rest,
          from_blue < 1.0F ? c_m : blue_rest};
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_HSL_COLOR_H_
