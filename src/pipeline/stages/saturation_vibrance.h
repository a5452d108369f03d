// Saturation and vibrance: the distance of a color from its luminance.
#ifndef LUMVIK_PIPELINE_STAGES_SATURATION_VIBRANCE_H_
#define LUMVIK_PIPELINE_STAGES_SATURATION_VIBRANCE_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// `saturation` scales that distance for every pixel, `vibrance` the more the duller the pixel came in, both
// in percent; the result is clamped to 0..1. Empty when both are 0.
RowTransform SaturationVibrance(float saturation, float vibrance);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_SATURATION_VIBRANCE_H_
