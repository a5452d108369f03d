// The minimum over a square around each pixel.
#ifndef LUMVIK_PIPELINE_SQUARE_MINIMUM_H_
#define LUMVIK_PIPELINE_SQUARE_MINIMUM_H_

#include <opencv2/core.hpp>

namespace lumvik {

// `plane` (CV_32FC1) eroded by a square of odd `side`, as cv::erode does it: pixels beyond the edge are
// ignored. The time grows with the logarithm of the side only. Works on all threads.
cv::Mat SquareMinimum(const cv::Mat& plane, int side);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_SQUARE_MINIMUM_H_
