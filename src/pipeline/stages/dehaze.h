// Dehaze: the haze model inverted, with transmission from the dark channel.
#ifndef LUMVIK_PIPELINE_STAGES_DEHAZE_H_
#define LUMVIK_PIPELINE_STAGES_DEHAZE_H_

#include <opencv2/core.hpp>

#include "pipeline/row_kernel.h"

namespace lumvik {

// `amount` in percent, above 0. `smallest` (CV_32FC1) is the smallest color of each pixel of the image that
// the kernel will change. Result in 0..1. Transmissions not above 0.1 count as 0, so that such pixels end
// black or white, whichever side of the airlight they lie on. He, Sun and Tang, Single Image Haze Removal
// Using Dark Channel Prior, 2009.
RowKernel Dehaze(const cv::Mat& smallest, float amount);

// The kernel that writes the smallest color of each pixel into `plane` (CV_32FC1).
RowKernel StoreSmallest(const cv::Mat& plane);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_DEHAZE_H_
