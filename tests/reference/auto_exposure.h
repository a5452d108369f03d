// Reference auto exposure.
#ifndef LUMVIK_TESTS_REFERENCE_AUTO_EXPOSURE_H_
#define LUMVIK_TESTS_REFERENCE_AUTO_EXPOSURE_H_

#include <array>
#include <cstdint>
#include <opencv2/core.hpp>

namespace lumvik::reference {

float ExposureFromHistogram(const std::array<uint32_t, 256>& counts);

// `image` is CV_16UC4.
float AutoExposure(const cv::Mat& image);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_AUTO_EXPOSURE_H_
