// Plain dehaze by the dark-channel prior (He, Sun and Tang).
#ifndef LUMVIK_TESTS_REFERENCE_DEHAZE_H_
#define LUMVIK_TESTS_REFERENCE_DEHAZE_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

// Side of the erosion kernel: 2 % of the width, odd, at least 3.
int DehazePatchSize(int columns);

// Mean of the brightest thousandth of the eroded dark plane (CV_32F), at least 0.01.
float Airlight(const cv::Mat& eroded_dark);

void Dehaze(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_DEHAZE_H_
