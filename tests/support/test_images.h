// Images to test on, and how far two of them lie apart.
#ifndef LUMVIK_TESTS_SUPPORT_TEST_IMAGES_H_
#define LUMVIK_TESTS_SUPPORT_TEST_IMAGES_H_

#include <opencv2/core.hpp>
#include <string>
#include <vector>

namespace lumvik::test {

// The folder of the photographs, with its last slash.
inline const std::string kTestData = LUMVIK_TEST_DATA "/";

// Uniform noise over the full range in all four channels (CV_16UC4), the same for the same seed.
cv::Mat NoiseImage(cv::Size size, uint64_t seed);

// The same as the pipeline works on it: 0 to 1 (CV_32FC4).
cv::Mat WorkingNoise(cv::Size size);

// A plane of it (CV_32F).
cv::Mat NoisePlane(cv::Size size, uint64_t seed = 5);

// A photograph of tests/data as an image buffer (CV_16UC4), reduced to `width` columns or brought to a size.
cv::Mat Photograph(const std::string& name, int width);
cv::Mat ResizedPhotograph(const std::string& name, cv::Size size);

// Sizes at which loops go wrong: single pixels, rows and columns, widths around the vector lengths.
const std::vector<cv::Size>& OddSizes();

// How two 16-bit images of the same size and type differ.
struct Difference {
  int largest = 0;         // in 16-bit codes
  double share_above = 0;  // of the samples, those that differ by more than `tolerance`
};
Difference Compare(const cv::Mat& a, const cv::Mat& b, int tolerance);

// True when type, size and every byte agree.
bool SameBytes(const cv::Mat& a, const cv::Mat& b);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_TEST_IMAGES_H_
