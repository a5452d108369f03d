#include "reference/hsl_color.h"

#include <algorithm>
#include <cmath>

#include "reference/clamp.h"

namespace lumvik::reference {
namespace {

// The sector 0..5 of a hue in sixths of a turn; -1 for what int cannot hold.
int Sector(float sixths) {
  constexpr float kIntLimit = 2147483648.0F;
  if (!(std::fabs(sixths) < kIntLimit)) return -1;
  return static_cast<int>(sixths) % 6;
}

}  // namespace

Hsl rgb_to_hsl(float r, float g, float b) {
  const float mx = std::max(std::max(r, g), b);
  const float mn = std::min(std::min(r, g), b);
  const float d = mx - mn;
  const float l = (mx + mn) * 0.5F;
  if (d < 1e-6F) return {0.0F, 0.0F, l};
  const float s = d / (1.0F - std::fabs(2.0F * l - 1.0F));
  float h = 0;
  if (mx == r) {
    h = fmodf((g - b) / d, 6.0F);
  } else if (mx == g) {
    h = (b - r) / d + 2.0F;
  } else {
    h = (r - g) / d + 4.0F;
  }
  h = h / 6.0F;
  if (h < 0.0F) h += 1.0F;
  return {h, s, l};
}

Rgb hsl_to_rgb(float h, float s, float l) {
  const float c = (1.0F - std::fabs(2.0F * l - 1.0F)) * s;
  const float x = c * (1.0F - std::fabs(fmodf(6.0F * h, 2.0F) - 1.0F));
  const float m = l - c / 2.0F;
  Rgb rgb{};
  switch (Sector(6.0F * h)) {
    case 0:
      rgb = {c, x, 0};
      break;
    case 1:
      rgb = {x, c, 0};
      break;
    case 2:
      rgb = {0, c, x};
      break;
    case 3:
      rgb = {0, x, c};
      break;
    case 4:
      rgb = {x, 0, c};
      break;
    default:
      rgb = {c, 0, x};
      break;
  }
  return {ClampUnit(rgb.r + m), ClampUnit(rgb.g + m), ClampUnit(rgb.b + m)};
}

}  // namespace lumvik::reference
