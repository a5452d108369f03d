// Reference noise reduction: blurs the luminance, keeping color ratios, and the color planes.
#ifndef LUMVIK_TESTS_REFERENCE_NOISE_REDUCTION_H_
#define LUMVIK_TESTS_REFERENCE_NOISE_REDUCTION_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void NoiseReduction(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_NOISE_REDUCTION_H_
