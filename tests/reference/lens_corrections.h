// Plain lens corrections: distortion, chromatic aberration, vignetting and color fringes.
#ifndef LUMVIK_TESTS_REFERENCE_LENS_CORRECTIONS_H_
#define LUMVIK_TESTS_REFERENCE_LENS_CORRECTIONS_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

// Brings a plane that one factor resized in both directions back to `size`: cropped about its center when it
// is at least as large both ways, otherwise centered on zeros.
void FitToSize(cv::Mat& plane, cv::Size size);

void LensCorrections(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_LENS_CORRECTIONS_H_
