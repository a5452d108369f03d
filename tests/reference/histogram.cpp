#include "reference/histogram.h"

#include <algorithm>

namespace lumvik::reference {
namespace {

size_t LevelOf(float value) {
  return static_cast<size_t>(std::clamp(static_cast<int>(value * 255.0F + 0.5F), 0, 255));
}

}  // namespace

Histograms CountLevels(const ImageBuffer& image) {
  cv::Mat pixels;
  image.convertTo(pixels, CV_32F, 1.0 / 65535.0);
  Histograms counts;
  for (int y = 0; y < pixels.rows; ++y) {
    for (int x = 0; x < pixels.cols; ++x) {
      const cv::Vec4f& pixel = pixels.at<cv::Vec4f>(y, x);
      ++counts.red[LevelOf(pixel[0])];
      ++counts.green[LevelOf(pixel[1])];
      ++counts.blue[LevelOf(pixel[2])];
      ++counts.luminance[LevelOf(0.2126F * pixel[0] + 0.7152F * pixel[1] + 0.0722F * pixel[2])];
    }
  }
  return counts;
}

}  // namespace lumvik::reference
