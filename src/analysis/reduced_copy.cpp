#include "analysis/reduced_copy.h"

#include <algorithm>
#include <array>
#include <opencv2/imgproc.hpp>

namespace lumvik {

ImageBuffer ReducedCopy(const ImageBuffer& image, int width) {
  constexpr int kMaxHeight = 32768;
  const int height = std::clamp(image.rows * width / image.cols, 1, kMaxHeight);
  return ResizedImageBuffer(image, width, height, cv::INTER_LINEAR);
}

cv::Mat WeightedLuminance(const cv::Mat& rgba) {
  std::array<cv::Mat, 4> planes;
  cv::split(rgba, planes.data());
  return double{0.2126F} * planes[0] + double{0.7152F} * planes[1] + double{0.0722F} * planes[2];
}

}  // namespace lumvik
