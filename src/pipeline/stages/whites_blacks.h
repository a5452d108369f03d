// Whites and blacks: the white and the black point of a levels operation.
#ifndef LUMVIK_PIPELINE_STAGES_WHITES_BLACKS_H_
#define LUMVIK_PIPELINE_STAGES_WHITES_BLACKS_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// Maps black point..white point to 0..1 in each channel and clamps. Positive `whites` (percent) raise the
// white point and so darken; positive `blacks` raise the black point.
RowTransform WhitesBlacks(float whites, float blacks);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_WHITES_BLACKS_H_
