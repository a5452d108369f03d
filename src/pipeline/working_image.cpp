#include "pipeline/working_image.h"

#include "pipeline/pixel_math.h"

namespace lumvik {

cv::Mat LuminancePlane(const cv::Mat& working) {
  cv::Mat plane(working.size(), CV_32F);
  ForEachRow(working.rows, [&](int y) {
    const auto* pixels = working.ptr<cv::Vec4f>(y);
    auto* luminance = plane.ptr<float>(y);
    for (int x = 0; x < working.cols; ++x) luminance[x] = Luminance(pixels[x][0], pixels[x][1], pixels[x][2]);
  });
  return plane;
}

cv::Mat ColorPlane(const cv::Mat& working, int color) {
  cv::Mat plane;
  cv::extractChannel(working, plane, color);
  return plane;
}

}  // namespace lumvik
