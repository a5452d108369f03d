#include "image/luminance.h"

#include <opencv2/core/utility.hpp>

namespace lumvik {

cv::Mat LuminancePlane(const cv::Mat& rgba) {
  cv::Mat plane(rgba.size(), CV_32F);
  cv::parallel_for_(cv::Range(0, rgba.rows), [&](const cv::Range& range) {
    for (int y = range.start; y < range.end; ++y) {
      const auto* pixels = rgba.ptr<cv::Vec4f>(y);
      auto* luminance = plane.ptr<float>(y);
      for (int x = 0; x < rgba.cols; ++x) luminance[x] = Luminance(pixels[x][0], pixels[x][1], pixels[x][2]);
    }
  });
  return plane;
}

}  // namespace lumvik
