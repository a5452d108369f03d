// Hue, saturation and lightness.
#ifndef LUMVIK_PIPELINE_HSL_COLOR_H_
#define LUMVIK_PIPELINE_HSL_COLOR_H_

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

// Foley, van Dam et al., Computer Graphics: Principles and Practice, section 13.3.5. A grey has hue and
// saturation 0.
// NOLINTNEXTLINE(readability-identifier-naming): the name this conversion has everywhere
inline HslColor rgb_to_hsl(float r, float g, float b) {
  constexpr float kGreySpread = 1e-6F;
  const float largest = std::max(std::max(r, g), b);
  const float smallest = std::min(std::min(r, g), b);
  const float spread = largest - smallest;
  const float l = (largest + smallest) * 0.5F;
  if (spread < kGreySpread) return {0.0F, 0.0F, l};
  const float s = spread / (1.0F - std::fabs(2.0F * l - 1.0F));
  const float sector = largest == r   ? std::fmod((g - b) / spread, 6.0F)
                       : largest == g ? (b - r) / spread + 2.0F
                                      : (r - g) / spread + 4.0F;
  const float h = sector / 6.0F;
  return {h < 0.0F ? h + 1.0F : h, s, l};
}

// Each component clamped to 0..1. A negative hue, or one of a whole turn and more, is taken as it falls.
// NOLINTNEXTLINE(readability-identifier-naming): likewise
inline RgbColor hsl_to_rgb(float h, float s, float l) {
  const float chroma = (1.0F - std::fabs(2.0F * l - 1.0F)) * s;
  const float x = chroma * (1.0F - std::fabs(std::fmod(6.0F * h, 2.0F) - 1.0F));
  const float m = l - chroma / 2.0F;
  const float c_m = ClampUnit(chroma + m);
  const float x_m = ClampUnit(x + m);
  const float o_m = ClampUnit(0.0F + m);
  switch (static_cast<int>(6.0F * h) % 6) {
    case 0:
      return {c_m, x_m, o_m};
    case 1:
      return {x_m, c_m, o_m};
    case 2:
      return {o_m, c_m, x_m};
    case 3:
      return {o_m, x_m, c_m};
    case 4:
      return {x_m, o_m, c_m};
    default:
      return {c_m, o_m, x_m};
  }
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_HSL_COLOR_H_
