// Noise reduction: luminance pulled towards its blur, colours blurred.
#ifndef LUMVIK_PIPELINE_NOISE_REDUCTION_H_
#define LUMVIK_PIPELINE_NOISE_REDUCTION_H_

#include <opencv2/core.hpp>

namespace lumvik {

// `luminance` and `color` in percent choose a Gaussian kernel of 3 to 13 and 3 to 11 pixels; each acts above
// 0 only. The luminance half keeps a pixel's colour ratios and does not clamp.
void NoiseReduction(cv::Mat& working, float luminance, float color);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_NOISE_REDUCTION_H_
