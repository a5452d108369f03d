// Split toning: one tint for the highlights, one for the shadows.
#ifndef LUMVIK_PIPELINE_STAGES_SPLIT_TONING_H_
#define LUMVIK_PIPELINE_STAGES_SPLIT_TONING_H_

#include "base/adjustments.h"
#include "pipeline/row_transform.h"

namespace lumvik {

// Adds saturation and moves the hue toward the two target hues, weighted by luminance. The hue moves
// linearly, without wrapping around; lightness stays.
RowTransform SplitToning(const SplitToningSettings& settings);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_SPLIT_TONING_H_
