// Reference highlights and shadows, whites and blacks.
#ifndef LUMVIK_TESTS_REFERENCE_TONE_RANGE_H_
#define LUMVIK_TESTS_REFERENCE_TONE_RANGE_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void HighlightsShadows(cv::Mat& working, const Adjustments& adjustments);

void WhitesBlacks(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_TONE_RANGE_H_
