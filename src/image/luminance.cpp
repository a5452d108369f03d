#include "image/luminance.h"

#include <opencv2/core/utility.hpp>

#include "image/large_image.h"
#include "image/vectorized.h"

namespace lumvik {
namespace {

constexpr int kSamples = 4;  // a pixel's: red, green, blue, alpha

void LuminanceRow(const float* __restrict rgba, int columns, float* __restrict luminance) {
  for (int x = 0; x < columns; ++x) {
    luminance[x] = Luminance(rgba[kSamples * x], rgba[kSamples * x + 1], rgba[kSamples * x + 2]);
  }
}

}  // namespace

cv::Mat LuminancePlane(const cv::Mat& rgba) {
  cv::Mat plane = LargeImage(rgba.size(), CV_32F);
  cv::parallel_for_(cv::Range(0, rgba.rows), [&](const cv::Range& range) {
    for (int y = range.start; y < range.end; ++y) {
      const auto* pixels = rgba.ptr<float>(y);
      auto* luminance = plane.ptr<float>(y);
      Vectorized([=, columns = rgba.cols] { LuminanceRow(pixels, columns, luminance); });
    }
  });
  return plane;
}

}  // namespace lumvik
