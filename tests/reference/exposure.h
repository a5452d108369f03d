// Reference exposure: a power of two with a shoulder for the highlights.
#ifndef LUMVIK_TESTS_REFERENCE_EXPOSURE_H_
#define LUMVIK_TESTS_REFERENCE_EXPOSURE_H_

#include <opencv2/core.hpp>

namespace lumvik::reference {

void Exposure(cv::Mat& working, float exposure);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_EXPOSURE_H_
