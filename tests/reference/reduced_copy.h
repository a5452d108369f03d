// The reduced copy that the automatic tools analyze, and its luminance.
#ifndef LUMVIK_TESTS_REFERENCE_REDUCED_COPY_H_
#define LUMVIK_TESTS_REFERENCE_REDUCED_COPY_H_

#include <algorithm>
#include <opencv2/imgproc.hpp>
#include <vector>

namespace lumvik::reference {

// CV_32FC4, 0..1, `width` columns, with the aspect ratio of the CV_16UC4 image.
inline cv::Mat ReducedFloatCopy(const cv::Mat& image, int width) {
  const int height = std::max(image.rows * width / image.cols, 1);
  cv::Mat reduced;
  cv::resize(image, reduced, cv::Size(width, height), 0, 0, cv::INTER_LINEAR);
  reduced.convertTo(reduced, CV_32F, 1.0 / 65535.0);
  return reduced;
}

// A matrix expression with single-precision weights, red first.
inline cv::Mat WeightedLuminance(const cv::Mat& image) {
  std::vector<cv::Mat> planes;
  cv::split(image, planes);
  return double{0.2126F} * planes[0] + double{0.7152F} * planes[1] + double{0.0722F} * planes[2];
}

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_REDUCED_COPY_H_
