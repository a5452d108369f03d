// Saturation and vibrance: the distance of a color from its luminance.
#ifndef LUMVIK_PIPELINE_STAGES_SATURATION_VIBRANCE_H_
#define LUMVIK_PIPELINE_STAGES_SATURATION_VIBRANCE_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// `saturation` scales that distance for every pixel, `vibrance` the more the less saturated the pixel is,
// both in percent; clamped to 0..1.
RowTransform SaturationVibrance(float saturation, float vibrance);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_SATURATION_VIBRANCE_H_
