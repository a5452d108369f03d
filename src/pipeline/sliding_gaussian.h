// Wide Gaussian blur at a cost that does not depend on its width.
#ifndef LUMVIK_PIPELINE_SLIDING_GAUSSIAN_H_
#define LUMVIK_PIPELINE_SLIDING_GAUSSIAN_H_

#include <opencv2/core.hpp>

namespace lumvik {

// `plane` (CV_32FC1) blurred over OpenCV's window for this sigma, borders mirrored. The window is made of a
// constant and a few cosines, whose sums slide along by a recursion of second order: K. Sugimoto, S. Kamata,
// "Fast Gaussian filter with second-order shift property of DCT-5", ICIP 2013. The cosines left out have
// together less than 1.2e-5 of the window's weight in either direction.
cv::Mat SlidingGaussian(const cv::Mat& plane, double sigma);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_SLIDING_GAUSSIAN_H_
