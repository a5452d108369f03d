#include "reference/auto_exposure.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "reference/clamp.h"
#include "reference/reduced_copy.h"

namespace lumvik::reference {

float ExposureFromHistogram(const std::array<uint32_t, 256>& counts) {
  uint32_t total = 0;
  for (const uint32_t count : counts) total += count;
  float m = 0.5F;
  if (total != 0) {
    const auto target = static_cast<uint32_t>(total * 0.5);
    m = 1.0F;
    uint32_t sum = 0;
    for (size_t b = 0; b < counts.size(); ++b) {
      sum += counts[b];
      if (sum >= target) {
        m = static_cast<float>(b) / 255.0F;
        break;
      }
    }
  }
  m = std::max(m, 0.001F);
  return Clamp(log2f(0.45F / m) * 0.35F, -0.25F, 1.0F);
}

float AutoExposure(const cv::Mat& image) {
  cv::Mat copy;
  cv::resize(image, copy, cv::Size(256, 256), 0, 0, cv::INTER_LINEAR);
  copy.convertTo(copy, CV_32F, 1.0 / 65535.0);
  const cv::Mat luminance = WeightedLuminance(copy);
  std::array<uint32_t, 256> counts = {};
  for (int y = 0; y < luminance.rows; ++y) {
    for (int x = 0; x < luminance.cols; ++x) {
      const int bin = static_cast<int>(luminance.at<float>(y, x) * 255.0F + 0.5F);
      ++counts[static_cast<size_t>(std::min(bin, 255))];
    }
  }
  return ExposureFromHistogram(counts);
}

}  // namespace lumvik::reference
