// Defringe: the purple and green seams of lateral color, made duller.
#ifndef LUMVIK_PIPELINE_STAGES_DEFRINGE_H_
#define LUMVIK_PIPELINE_STAGES_DEFRINGE_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// Damps the saturation of pixels of those hues above a limit, both from `amount` (percent). Empty unless it
// is above 0.
RowTransform Defringe(float amount);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_DEFRINGE_H_
