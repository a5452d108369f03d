// The smallest value of each pixel's neighborhood.
#ifndef LUMVIK_PIPELINE_SQUARE_MINIMUM_H_
#define LUMVIK_PIPELINE_SQUARE_MINIMUM_H_

#include <opencv2/core.hpp>

namespace lumvik {

// `plane` (CV_32FC1) eroded by a square of that odd side, as cv::erode does it: what lies beyond the edge
// takes no part. The time does not grow with the side but for its logarithm. Works on all threads.
cv::Mat SquareMinimum(const cv::Mat& plane, int side);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_SQUARE_MINIMUM_H_
