// Lossless JPEG (ITU-T T.81, process 14), as DNG files hold it.
#ifndef LUMVIK_TESTS_SUPPORT_LOSSLESS_JPEG_H_
#define LUMVIK_TESTS_SUPPORT_LOSSLESS_JPEG_H_

#include <cstdint>
#include <opencv2/core.hpp>
#include <vector>

namespace lumvik::test {

// `sensor`: CV_16UC1, 14-bit samples. One component, predictor 1.
std::vector<uint8_t> EncodeLosslessJpeg(const cv::Mat& sensor);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_LOSSLESS_JPEG_H_
