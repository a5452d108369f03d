// Reference saturation and vibrance: scales the distance from the luminance.
#ifndef LUMVIK_TESTS_REFERENCE_SATURATION_VIBRANCE_H_
#define LUMVIK_TESTS_REFERENCE_SATURATION_VIBRANCE_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void SaturationVibrance(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_SATURATION_VIBRANCE_H_
