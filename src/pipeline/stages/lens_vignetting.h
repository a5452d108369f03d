// Lens vignetting: the darkening of a frame's corners, compensated.
#ifndef LUMVIK_PIPELINE_STAGES_LENS_VIGNETTING_H_
#define LUMVIK_PIPELINE_STAGES_LENS_VIGNETTING_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// Gain 1 in the center to 1.5 in the corners at 100 percent, with the square of the distance; clamped to
// 0..1. Empty unless `amount` is above 0.
RowTransform LensVignetting(float amount, cv::Size frame);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_LENS_VIGNETTING_H_
