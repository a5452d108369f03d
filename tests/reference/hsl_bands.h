// Reference HSL bands: shifts of hue, saturation and lightness around eight hues.
#ifndef LUMVIK_TESTS_REFERENCE_HSL_BANDS_H_
#define LUMVIK_TESTS_REFERENCE_HSL_BANDS_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void HslBands(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_HSL_BANDS_H_
