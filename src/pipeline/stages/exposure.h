// Exposure with a highlight shoulder.
#ifndef LUMVIK_PIPELINE_STAGES_EXPOSURE_H_
#define LUMVIK_PIPELINE_STAGES_EXPOSURE_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// Multiplies by 2 to the power of `exposure` (stops). A pixel whose largest channel exceeds 0.75 is scaled
// onto a shoulder that tends to 1 and is blended toward the gray of that level, so that over-exposed colors
// turn white and no single channel clips. Result in 0..1.
RowTransform Exposure(float exposure);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_EXPOSURE_H_
