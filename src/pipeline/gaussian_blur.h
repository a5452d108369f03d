// Gaussian blur of float planes on all threads.
#ifndef LUMVIK_PIPELINE_GAUSSIAN_BLUR_H_
#define LUMVIK_PIPELINE_GAUSSIAN_BLUR_H_

#include <opencv2/core.hpp>

namespace lumvik {

// `plane` (CV_32FC1) blurred as cv::GaussianBlur does with this sigma and the kernel size that it derives
// from it, borders mirrored. From a sigma of kSlidingSigma on the result differs from OpenCV's by less than
// 2e-5 of the plane's range. The bytes do not depend on the number of threads.
cv::Mat GaussianBlurred(const cv::Mat& plane, double sigma);

// The same with a kernel of that size, both odd, and the sigma that OpenCV derives from it.
cv::Mat GaussianBlurred(const cv::Mat& plane, cv::Size kernel);

inline constexpr double kSlidingSigma = 8.0;

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_GAUSSIAN_BLUR_H_
