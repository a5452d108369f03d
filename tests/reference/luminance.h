// Rec. 709 luminance in the precision and order of the per-pixel and the whole-plane stages.
#ifndef LUMVIK_TESTS_REFERENCE_LUMINANCE_H_
#define LUMVIK_TESTS_REFERENCE_LUMINANCE_H_

#include <opencv2/core.hpp>
#include <vector>

namespace lumvik::reference {

// Single precision, green first.
inline float Luminance(const cv::Vec4f& pixel) {
  return 0.7152F * pixel[1] + 0.2126F * pixel[0] + 0.0722F * pixel[2];
}

// A matrix expression with double weights, red first.
inline cv::Mat LuminancePlane(const std::vector<cv::Mat>& planes) {
  return 0.2126 * planes[0] + 0.7152 * planes[1] + 0.0722 * planes[2];
}

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_LUMINANCE_H_
