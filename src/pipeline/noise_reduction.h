// Noise reduction: luminance pulled towards its blur, colours blurred.
#ifndef LUMVIK_PIPELINE_NOISE_REDUCTION_H_
#define LUMVIK_PIPELINE_NOISE_REDUCTION_H_

#include "pipeline/row_kernel.h"

namespace lumvik {

// `percent`, above 0, chooses a Gaussian kernel of 3 to 13 pixels for luminance and 3 to 11 for colour.
// `luminance` (CV_32FC1) and `image` are those of the image that the kernel will change. The luminance half
// keeps a pixel's colour ratios and does not clamp.
RowKernel LuminanceNoiseReduction(const cv::Mat& luminance, float percent);
RowKernel ColorNoiseReduction(const ColorPlanes& image, float percent);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_NOISE_REDUCTION_H_
