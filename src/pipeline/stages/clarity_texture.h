// Clarity and texture: local contrast at a large and at a small radius.
#ifndef LUMVIK_PIPELINE_STAGES_CLARITY_TEXTURE_H_
#define LUMVIK_PIPELINE_STAGES_CLARITY_TEXTURE_H_

#include "pipeline/row_steps.h"

namespace lumvik {

// Adds to every color what the luminance holds beyond its blur (sigma 20 pixels for clarity, 3 for texture),
// both in percent and both taken from the luminance that came in; clamped to 0..1 after each. `luminance`
// (CV_32FC1) is that of the image that the step will change.
RowStep ClarityTexture(const cv::Mat& luminance, float clarity, float texture);

// The same with a clarity of 0, which needs no luminance beforehand.
AreaKernel Texture(float texture);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_CLARITY_TEXTURE_H_
