// The two clamps that the plain stages share.
#ifndef LUMVIK_TESTS_REFERENCE_CLAMP_H_
#define LUMVIK_TESTS_REFERENCE_CLAMP_H_

#include <algorithm>
#include <opencv2/imgproc.hpp>

namespace lumvik::reference {

// Upper bound first, the value always as the first operand: a NaN stays a NaN.
inline float Clamp(float value, float low, float high) {
  return std::max(std::min(value, high), low);
}

inline float ClampUnit(float value) {
  return Clamp(value, 0.0F, 1.0F);
}

// A whole plane into 0..1; a NaN is not above 0 and becomes 0.
inline void ClampPlane(cv::Mat& plane) {
  cv::threshold(plane, plane, 0, 0, cv::THRESH_TOZERO);
  cv::threshold(plane, plane, 1.0, 1.0, cv::THRESH_TRUNC);
}

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_CLAMP_H_
