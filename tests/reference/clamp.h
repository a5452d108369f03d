// The two clamps of the reference stages.
#ifndef LUMVIK_TESTS_REFERENCE_CLAMP_H_
#define LUMVIK_TESTS_REFERENCE_CLAMP_H_

#include <algorithm>
#include <opencv2/imgproc.hpp>

namespace lumvik::reference {

// The upper bound first and the value as the first operand, which keeps NaN.
inline float Clamp(float value, float low, float high) {
  return std::max(std::min(value, high), low);
}

inline float ClampUnit(float value) {
  return Clamp(value, 0.0F, 1.0F);
}

// Clamps a plane to 0..1; NaN is not above 0 and becomes 0.
inline void ClampPlane(cv::Mat& plane) {
  cv::threshold(plane, plane, 0, 0, cv::THRESH_TOZERO);
  cv::threshold(plane, plane, 1.0, 1.0, cv::THRESH_TRUNC);
}

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_CLAMP_H_
