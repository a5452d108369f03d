// Working images of one color, and one stage run on one pixel, for the tests of the plain stages.
#ifndef LUMVIK_TESTS_REFERENCE_PIXEL_H_
#define LUMVIK_TESTS_REFERENCE_PIXEL_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

inline cv::Mat Uniform(int columns, int rows, const cv::Vec4f& color) {
  return cv::Mat(rows, columns, CV_32FC4, cv::Scalar(color));
}

using Stage = void (*)(const cv::Mat& source, cv::Mat& working, const Adjustments& adjustments);

inline cv::Vec4f OnPixel(Stage stage, const Adjustments& adjustments, const cv::Vec4f& color) {
  cv::Mat working = Uniform(1, 1, color);
  stage({}, working, adjustments);
  return working.at<cv::Vec4f>(0, 0);
}

// Every sample, alpha included, bit for bit.
inline bool SamePixels(const cv::Mat& a, const cv::Mat& b) {
  return a.size() == b.size() && a.type() == b.type() && cv::norm(a, b, cv::NORM_INF) == 0;
}

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_PIXEL_H_
