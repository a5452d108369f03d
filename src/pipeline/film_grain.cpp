#include "pipeline/film_grain.h"

#include "image/large_image.h"
#include "pipeline/gaussian_blur.h"
#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kStrength = 0.05F;
constexpr float kSmallestSize = 0.01F;
constexpr double kSmallestDeviation = 1e-6;

cv::Mat Noise(cv::Size frame, double deviation, float size) {
  cv::Mat noise = LargeImage(frame, CV_32F);
  cv::randn(noise, 0.0, deviation);
  if (size > kSmallestSize) {
    noise = GaussianBlurred(noise, static_cast<double>(2.0F * size + 0.5F));
    cv::Scalar mean;
    cv::Scalar blurred_deviation;
    cv::meanStdDev(noise, mean, blurred_deviation);
    if (blurred_deviation[0] > kSmallestDeviation) noise *= deviation / blurred_deviation[0];
  }
  return noise;
}

void AddGrain(const PixelRow& row, const float* grain) {
  for (int i = 0; i < row.columns; ++i) {
    row.red[i] = SaturateUnit(row.red[i] + grain[i]);
    row.green[i] = SaturateUnit(row.green[i] + grain[i]);
    row.blue[i] = SaturateUnit(row.blue[i] + grain[i]);
  }
}

}  // namespace

RowKernel FilmGrain(cv::Size frame, float amount, float size) {
  return MakeRowKernel([](const PixelRow& row, const float* grain) { AddGrain(row, grain); },
                       Noise(frame, static_cast<double>(amount / 100.0F * kStrength), size / 100.0F));
}

}  // namespace lumvik
