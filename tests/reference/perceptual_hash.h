// Reference perceptual hash.
#ifndef LUMVIK_TESTS_REFERENCE_PERCEPTUAL_HASH_H_
#define LUMVIK_TESTS_REFERENCE_PERCEPTUAL_HASH_H_

#include <cstdint>
#include <opencv2/core.hpp>

namespace lumvik::reference {

// The 8 x 8 lowest frequencies (CV_32F) of a gray image (CV_8UC1) reduced to 32 x 32.
cv::Mat LowFrequencies(const cv::Mat& gray);

uint64_t PerceptualHash(const cv::Mat& gray);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_PERCEPTUAL_HASH_H_
