// Brightness: a power function on each color channel.
#ifndef LUMVIK_PIPELINE_STAGES_BRIGHTNESS_H_
#define LUMVIK_PIPELINE_STAGES_BRIGHTNESS_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// The exponent for a brightness in percent: 2 at -100 (darker), 2/3 at 100 (brighter), clamped to 0.1..10.
float BrightnessExponent(float brightness);

// Raises each channel to that exponent. The identity if it is 1.
RowTransform Brightness(float brightness);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_BRIGHTNESS_H_
