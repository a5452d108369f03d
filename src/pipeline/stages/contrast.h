// Contrast: a sigmoid about middle gray.
#ifndef LUMVIK_PIPELINE_STAGES_CONTRAST_H_
#define LUMVIK_PIPELINE_STAGES_CONTRAST_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// Each channel x becomes t / (0.4 |t| + 1) + 0.5 with t = k (x - 0.5), clamped to 0..1; k is 1.8 at 100
// percent, 0.2 at -100. Not the identity near 0: any contrast but 0 maps 1.0 to about 0.92.
RowTransform Contrast(float contrast);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_CONTRAST_H_
