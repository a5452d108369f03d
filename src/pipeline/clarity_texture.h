// Clarity and texture: local contrast at a large and at a small radius.
#ifndef LUMVIK_PIPELINE_CLARITY_TEXTURE_H_
#define LUMVIK_PIPELINE_CLARITY_TEXTURE_H_

#include "pipeline/row_kernel.h"

namespace lumvik {

// Adds to every colour what the luminance holds beyond its blur (sigma 20 pixels for clarity, 3 for texture),
// both in percent and both taken from the luminance that came in; clamped to 0..1 after each. The kernel is
// for the rows of `working` as it is now.
RowKernel ClarityTexture(const cv::Mat& luminance, float clarity, float texture);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_CLARITY_TEXTURE_H_
