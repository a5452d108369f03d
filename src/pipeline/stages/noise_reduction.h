// Noise reduction: luminance pulled toward its blur, colors blurred.
#ifndef LUMVIK_PIPELINE_STAGES_NOISE_REDUCTION_H_
#define LUMVIK_PIPELINE_STAGES_NOISE_REDUCTION_H_

#include "pipeline/area_transform.h"

namespace lumvik {

// `percent`, above 0, selects a Gaussian kernel of 3 to 13 pixels for luminance and 3 to 11 for color; larger
// percentages select larger kernels, and those that overflow an int the smallest. The luminance half keeps
// the color ratios of a pixel and does not clamp.
AreaTransform LuminanceNoiseReduction(float percent);
AreaTransform ColorNoiseReduction(float percent);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_NOISE_REDUCTION_H_
