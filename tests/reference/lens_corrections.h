// Reference lens corrections: distortion, chromatic aberration, vignetting and color fringes.
#ifndef LUMVIK_TESTS_REFERENCE_LENS_CORRECTIONS_H_
#define LUMVIK_TESTS_REFERENCE_LENS_CORRECTIONS_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void LensCorrections(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_LENS_CORRECTIONS_H_
