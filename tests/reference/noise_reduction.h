// Plain noise reduction: smoothed luminance at kept color ratios, and blurred color planes.
#ifndef LUMVIK_TESTS_REFERENCE_NOISE_REDUCTION_H_
#define LUMVIK_TESTS_REFERENCE_NOISE_REDUCTION_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

// Sides of the Gaussian kernels for a setting in percent: 3..13 and 3..11.
int LuminanceKernelSize(float nr_luminance);
int ColorKernelSize(float nr_color);

void NoiseReduction(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_NOISE_REDUCTION_H_
