// Reference post-crop vignette: fades the frame to white with the distance from its center.
#ifndef LUMVIK_TESTS_REFERENCE_POST_CROP_VIGNETTE_H_
#define LUMVIK_TESTS_REFERENCE_POST_CROP_VIGNETTE_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void PostCropVignette(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_POST_CROP_VIGNETTE_H_
