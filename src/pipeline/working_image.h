// What the stages that need more than a pixel share.
#ifndef LUMVIK_PIPELINE_WORKING_IMAGE_H_
#define LUMVIK_PIPELINE_WORKING_IMAGE_H_

#include <opencv2/core.hpp>
#include <opencv2/core/utility.hpp>

#include "pipeline/row_kernel.h"

namespace lumvik {

inline constexpr int kChannels = 4;  // of a packed image: red, green, blue, alpha

// Calls `work(y)` for every row, shared out over OpenCV's worker threads.
template <typename Work>
void ForEachRow(int rows, const Work& work) {
  cv::parallel_for_(cv::Range(0, rows), [&work](const cv::Range& range) {
    for (int y = range.start; y < range.end; ++y) work(y);
  });
}

// Planes of this size with undefined content.
ColorPlanes LargePlanes(cv::Size size);

// The kernel that leaves the pixels as they are and writes their luminance into `plane` (CV_32FC1).
RowKernel StoreLuminance(const cv::Mat& plane);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_WORKING_IMAGE_H_
