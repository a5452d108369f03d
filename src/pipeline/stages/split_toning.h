// Split toning: one tint for bright tones, one for dark ones.
#ifndef LUMVIK_PIPELINE_STAGES_SPLIT_TONING_H_
#define LUMVIK_PIPELINE_STAGES_SPLIT_TONING_H_

#include "base/adjustments.h"
#include "pipeline/row_transform.h"

namespace lumvik {

// Adds saturation and moves the hue towards the two target hues, weighted by luminance; the hue moves
// linearly, without wrap-around, and lightness stays. Empty when both saturations are 0.
RowTransform SplitToning(const SplitToningSettings& settings);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_SPLIT_TONING_H_
