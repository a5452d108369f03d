#include "reference/scene_analysis.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "reference/auto_exposure.h"
#include "reference/clamp.h"
#include "reference/luminance.h"
#include "reference/reduced_copy.h"

namespace lumvik::reference {
namespace {

using Counts = std::array<uint32_t, 256>;

Counts CountLuminance(const cv::Mat& image) {
  Counts counts = {};
  for (int y = 0; y < image.rows; ++y) {
    for (int x = 0; x < image.cols; ++x) {
      const float luminance = Luminance(image.at<cv::Vec4f>(y, x));
      ++counts[static_cast<size_t>(Clamp(luminance * 255.0F + 0.5F, 0.0F, 255.0F))];
    }
  }
  return counts;
}

float Spread(const Counts& counts) {
  double total = 0;
  double mean = 0;
  double variance = 0;
  for (size_t i = 0; i < counts.size(); ++i) {
    const double x = static_cast<double>(i) / 255.0;
    total += counts[i];
    mean += counts[i] * x;
    variance += counts[i] * x * x;
  }
  if (total < 1) return 0;
  mean /= total;
  variance = std::max(variance / total - mean * mean, 0.0);
  return static_cast<float>(std::sqrt(variance));
}

float NoiseReduction(const cv::Mat& image) {
  cv::Mat laplacian;
  cv::Laplacian(WeightedLuminance(image), laplacian, CV_32F, 1, 1, 0, cv::BORDER_REFLECT_101);
  cv::Scalar mean;
  cv::Scalar deviation;
  cv::meanStdDev(laplacian, mean, deviation);
  const auto sigma = static_cast<float>(deviation[0]);
  const float n = Clamp((0.1F - sigma) / 0.1F * 80.0F + 20.0F, 0.0F, 100.0F);
  return Clamp(n, 0.0F, 35.0F);
}

}  // namespace

std::array<float, 32> AnalyzeScene(const cv::Mat& image) {
  const cv::Mat copy = ReducedFloatCopy(image, 512);
  const Counts counts = CountLuminance(copy);
  float total = 0;
  for (const uint32_t count : counts) total += static_cast<float>(count);
  const float white = total >= 1 ? static_cast<float>(counts[255]) / total : 0;
  const float black = total >= 1 ? static_cast<float>(counts[0]) / total : 0;
  const float c = Clamp((0.15F - Spread(counts)) / 0.15F * 22.0F, -20.0F, 28.0F);
  const float h = white > 0.01F ? -std::min(white * 500, 50.0F) : 0;
  const float s = black > 0.01F ? std::min(black * 400, 30.0F) : 0;
  std::array<float, 32> record = {};
  record[0] = Clamp(ExposureFromHistogram(counts), -2.0F, 2.0F);
  record[1] = 0;
  record[2] = Clamp(c, -15.0F, 28.0F);
  record[3] = std::max(std::min(h, 0.0F), -40.0F);
  record[4] = std::min(std::max(15.0F, s), 25.0F);
  record[5] = 0;
  record[6] = 5;
  record[7] = 6500;
  record[8] = 0;
  record[9] = 5;
  record[10] = 16;
  record[11] = 6;
  record[12] = 0;
  record[13] = 0;
  record[14] = NoiseReduction(copy);
  record[15] = 1;
  return record;
}

}  // namespace lumvik::reference
