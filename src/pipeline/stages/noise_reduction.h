// Noise reduction: luminance pulled towards its blur, colors blurred.
#ifndef LUMVIK_PIPELINE_STAGES_NOISE_REDUCTION_H_
#define LUMVIK_PIPELINE_STAGES_NOISE_REDUCTION_H_

#include "pipeline/row_steps.h"

namespace lumvik {

// `percent`, above 0, chooses a Gaussian kernel of 3 to 13 pixels for luminance and 3 to 11 for color. The
// luminance half keeps a pixel's color ratios and does not clamp.
AreaKernel LuminanceNoiseReduction(float percent);
AreaKernel ColorNoiseReduction(float percent);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_NOISE_REDUCTION_H_
