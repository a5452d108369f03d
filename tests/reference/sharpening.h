// Reference sharpening: an unsharp mask for detail above a threshold.
#ifndef LUMVIK_TESTS_REFERENCE_SHARPENING_H_
#define LUMVIK_TESTS_REFERENCE_SHARPENING_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void Sharpening(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_SHARPENING_H_
