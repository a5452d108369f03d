#include "reference/perceptual_hash.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>
#include <vector>

namespace lumvik::reference {

cv::Mat LowFrequencies(const cv::Mat& gray) {
  cv::Mat small;
  cv::resize(gray, small, cv::Size(32, 32), 0, 0, cv::INTER_AREA);
  cv::Mat floats;
  small.convertTo(floats, CV_32F, 1, 0);
  cv::Mat coefficients;
  cv::dct(floats, coefficients, 0);
  return coefficients(cv::Rect(0, 0, 8, 8)).clone();
}

uint64_t PerceptualHash(const cv::Mat& gray) {
  const cv::Mat block = LowFrequencies(gray);
  std::vector<float> others;
  for (int row = 0; row < 8; ++row) {
    for (int column = 0; column < 8; ++column) {
      if (row != 0 || column != 0) others.push_back(block.at<float>(row, column));
    }
  }
  std::sort(others.begin(), others.end());
  const float median = others[31];
  uint64_t hash = 0;
  for (int row = 0; row < 8; ++row) {
    for (int column = 0; column < 8; ++column) {
      hash = hash * 2 + (block.at<float>(row, column) > median ? 1 : 0);
    }
  }
  return hash;
}

}  // namespace lumvik::reference
