// Defringe: purple and green fringes of lateral color, desaturated.
#ifndef LUMVIK_PIPELINE_STAGES_DEFRINGE_H_
#define LUMVIK_PIPELINE_STAGES_DEFRINGE_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// Reduces the saturation of pixels of those hues above a limit; both follow from `amount` (percent, above 0).
RowTransform Defringe(float amount);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_DEFRINGE_H_
