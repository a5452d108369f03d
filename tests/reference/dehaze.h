// Reference dehaze by the dark channel prior (He, Sun and Tang, 2009).
#ifndef LUMVIK_TESTS_REFERENCE_DEHAZE_H_
#define LUMVIK_TESTS_REFERENCE_DEHAZE_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void Dehaze(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_DEHAZE_H_
