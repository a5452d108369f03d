// Reference split toning: tints highlights and shadows towards two hues.
#ifndef LUMVIK_TESTS_REFERENCE_SPLIT_TONING_H_
#define LUMVIK_TESTS_REFERENCE_SPLIT_TONING_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void SplitToning(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_SPLIT_TONING_H_
