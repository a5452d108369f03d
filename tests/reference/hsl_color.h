// Conversions between RGB and the hue, saturation, lightness model.
#ifndef LUMVIK_TESTS_REFERENCE_HSL_COLOR_H_
#define LUMVIK_TESTS_REFERENCE_HSL_COLOR_H_

namespace lumvik::reference {

struct Hsl {
  float h;  // fraction of a turn
  float s;
  float l;
};

struct Rgb {
  float r;
  float g;
  float b;
};

Hsl rgb_to_hsl(float r, float g, float b);

// Each component clamped to 0..1.
Rgb hsl_to_rgb(float h, float s, float l);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_HSL_COLOR_H_
