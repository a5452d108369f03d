// Lens vignetting: compensation for the darkening of the corners.
#ifndef LUMVIK_PIPELINE_STAGES_LENS_VIGNETTING_H_
#define LUMVIK_PIPELINE_STAGES_LENS_VIGNETTING_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// Gain 1 at the center to 1.5 in the corners at 100 percent, with the square of the distance; clamped to
// 0..1.
RowTransform LensVignetting(float amount, cv::Size frame);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_LENS_VIGNETTING_H_
