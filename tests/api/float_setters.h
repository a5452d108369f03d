// The setters that store one float each.
#ifndef LUMVIK_TESTS_API_FLOAT_SETTERS_H_
#define LUMVIK_TESTS_API_FLOAT_SETTERS_H_

#include "base/adjustments.h"
#include "lumvik.h"

namespace lumvik::test {

struct FloatSetter {
  const char* name;
  void (*set)(EngineContext*, float);
  float Adjustments::*field;
  float initial;
  float lowest;  // of the range that makes sense
  float highest;
};

#define LUMVIK_SETTER(field, initial, lowest, highest) \
  { "lumvik_set_" #field, lumvik_set_##field, &Adjustments::field, initial, lowest, highest }
inline constexpr FloatSetter kFloatSetters[] = {
    LUMVIK_SETTER(exposure, 0, -10, 10),
    LUMVIK_SETTER(brightness, 0, -100, 100),
    LUMVIK_SETTER(contrast, 0, -100, 100),
    LUMVIK_SETTER(highlights, 0, -100, 100),
    LUMVIK_SETTER(shadows, 0, -100, 100),
    LUMVIK_SETTER(whites, 0, -100, 100),
    LUMVIK_SETTER(blacks, 0, -100, 100),
    LUMVIK_SETTER(temperature, 5500, 1667, 25000),
    LUMVIK_SETTER(tint, 0, -150, 150),
    LUMVIK_SETTER(saturation, 0, -100, 100),
    LUMVIK_SETTER(vibrance, 0, -100, 100),
    LUMVIK_SETTER(sharpening_amount, 0, 0, 150),
    LUMVIK_SETTER(sharpening_radius, 1, 0.01F, 100),
    LUMVIK_SETTER(sharpening_threshold, 0, 0, 65535),
    LUMVIK_SETTER(nr_luminance, 0, 0, 100),
    LUMVIK_SETTER(nr_color, 0, 0, 100),
    LUMVIK_SETTER(clarity, 0, -100, 100),
    LUMVIK_SETTER(texture, 0, -100, 100),
    LUMVIK_SETTER(dehaze, 0, 0, 100),
    LUMVIK_SETTER(distortion, 0, -100, 100),
    LUMVIK_SETTER(ca_correction, 0, 0, 100),
    LUMVIK_SETTER(lens_vignette, 0, 0, 100),
    LUMVIK_SETTER(defringe, 0, 0, 100),
    LUMVIK_SETTER(rotation, 0, -180, 180),
    LUMVIK_SETTER(perspective_h, 0, -100, 100),
    LUMVIK_SETTER(perspective_v, 0, -100, 100),
    LUMVIK_SETTER(vignette_amount, 0, -100, 100),
    LUMVIK_SETTER(vignette_midpoint, 50, 0, 100),
    LUMVIK_SETTER(vignette_roundness, 0, -100, 100),
    LUMVIK_SETTER(grain_amount, 0, 0, 100),
    LUMVIK_SETTER(grain_size, 25, 0, 100),
};
#undef LUMVIK_SETTER

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_API_FLOAT_SETTERS_H_
