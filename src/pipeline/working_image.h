// What the stages that need more than a pixel do with the working image (CV_32FC4, red, green, blue, alpha).
#ifndef LUMVIK_PIPELINE_WORKING_IMAGE_H_
#define LUMVIK_PIPELINE_WORKING_IMAGE_H_

#include <array>
#include <opencv2/core.hpp>
#include <opencv2/core/utility.hpp>

namespace lumvik {

inline constexpr int kColors = 3;
inline constexpr int kChannels = 4;

// Calls `work(y)` for every row, shared out over OpenCV's worker threads.
template <typename Work>
void ForEachRow(int rows, const Work& work) {
  cv::parallel_for_(cv::Range(0, rows), [&work](const cv::Range& range) {
    for (int y = range.start; y < range.end; ++y) work(y);
  });
}

// CV_32FC1 of one colour, and of red, green and blue.
cv::Mat ColorPlane(const cv::Mat& working, int color);
std::array<cv::Mat, kColors> ColorPlanes(const cv::Mat& working);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_WORKING_IMAGE_H_
