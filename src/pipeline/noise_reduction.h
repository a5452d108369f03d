// Noise reduction: luminance pulled towards its blur, colours blurred.
#ifndef LUMVIK_PIPELINE_NOISE_REDUCTION_H_
#define LUMVIK_PIPELINE_NOISE_REDUCTION_H_

#include "pipeline/row_kernel.h"

namespace lumvik {

// `luminance` and `color` in percent choose a Gaussian kernel of 3 to 13 and 3 to 11 pixels. The
// kernels are for the rows of `working` as it is now. The luminance half keeps a pixel's colour ratios and
// does not clamp.
RowKernel LuminanceNoiseReduction(const cv::Mat& working, float luminance);
RowKernel ColorNoiseReduction(const cv::Mat& working, float color);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_NOISE_REDUCTION_H_
