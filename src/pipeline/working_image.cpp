#include "pipeline/working_image.h"

#include "image/large_image.h"
#include "image/vectorized.h"

namespace lumvik {

cv::Mat ColorPlane(const cv::Mat& working, int color) {
  cv::Mat plane = LargeImage(working.size(), CV_32F);
  ForEachRow(working.rows, [&](int y) {
    const float* pixels = working.ptr<float>(y) + color;
    auto* values = plane.ptr<float>(y);
    Vectorized([=, columns = working.cols] {
      for (int x = 0; x < columns; ++x) values[x] = pixels[kChannels * x];
    });
  });
  return plane;
}

std::array<cv::Mat, kColors> ColorPlanes(const cv::Mat& working) {
  std::array<cv::Mat, kColors> planes;
  for (cv::Mat& plane : planes) plane = LargeImage(working.size(), CV_32F);
  ForEachRow(working.rows, [&](int y) {
    const auto* pixels = working.ptr<float>(y);
    auto* red = planes[0].ptr<float>(y);
    auto* green = planes[1].ptr<float>(y);
    auto* blue = planes[2].ptr<float>(y);
    Vectorized([=, columns = working.cols] {
      for (int x = 0; x < columns; ++x) {
        red[x] = pixels[kChannels * x];
        green[x] = pixels[kChannels * x + 1];
        blue[x] = pixels[kChannels * x + 2];
      }
    });
  });
  return planes;
}

}  // namespace lumvik
