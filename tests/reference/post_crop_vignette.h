// Plain post-crop vignette: fades the frame towards white with the distance from its center.
#ifndef LUMVIK_TESTS_REFERENCE_POST_CROP_VIGNETTE_H_
#define LUMVIK_TESTS_REFERENCE_POST_CROP_VIGNETTE_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

// Distance of a point whose coordinates are 0 in the center and 1 at the frame's edges. Elliptic, below
// roundness 0 blended towards the rectangular distance, which is reached at -100.
float VignetteDistance(float nx, float ny, float roundness);

void PostCropVignette(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_POST_CROP_VIGNETTE_H_
