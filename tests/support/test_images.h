// Test images, and comparisons of them.
#ifndef LUMVIK_TESTS_SUPPORT_TEST_IMAGES_H_
#define LUMVIK_TESTS_SUPPORT_TEST_IMAGES_H_

#include <opencv2/core.hpp>
#include <string>
#include <vector>

namespace lumvik::test {

// The folder of the photographs, with a trailing slash.
inline const std::string kTestData = LUMVIK_TEST_DATA "/";

// Uniform noise over the full range in all four channels (CV_16UC4), determined by the seed.
cv::Mat NoiseImage(cv::Size size, uint64_t seed);

// The same as a working image (CV_32FC4, 0..1).
cv::Mat WorkingNoise(cv::Size size);

// A plane of noise (CV_32F, 0..1).
cv::Mat NoisePlane(cv::Size size, uint64_t seed = 5);

// A photograph of tests/data as an image buffer (CV_16UC4), reduced to `width` columns or resized.
cv::Mat Photograph(const std::string& name, int width);
cv::Mat ResizedPhotograph(const std::string& name, cv::Size size);

// Sizes that are hard on loops: single pixels, rows and columns, widths around the vector lengths.
const std::vector<cv::Size>& OddSizes();

// How two 16-bit images of the same size and type differ.
struct Difference {
  int largest = 0;         // in 16-bit codes
  double share_above = 0;  // of the samples that differ by more than `tolerance`
};
Difference Compare(const cv::Mat& a, const cv::Mat& b, int tolerance);

// Whether type, size and every byte are equal.
bool SameBytes(const cv::Mat& a, const cv::Mat& b);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_TEST_IMAGES_H_
