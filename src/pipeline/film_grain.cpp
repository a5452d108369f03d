#include "pipeline/film_grain.h"

#include <opencv2/imgproc.hpp>

#include "pipeline/pixel_math.h"
#include "pipeline/working_image.h"

namespace lumvik {
namespace {

constexpr float kStrength = 0.05F;
constexpr float kSmallestSize = 0.01F;
constexpr double kSmallestDeviation = 1e-6;

cv::Mat Noise(cv::Size frame, double deviation, float size) {
  cv::Mat noise(frame, CV_32F);
  cv::randn(noise, 0.0, deviation);
  if (size > kSmallestSize) {
    cv::GaussianBlur(noise, noise, cv::Size(), static_cast<double>(2.0F * size + 0.5F));
    cv::Scalar mean;
    cv::Scalar blurred_deviation;
    cv::meanStdDev(noise, mean, blurred_deviation);
    if (blurred_deviation[0] > kSmallestDeviation) noise *= deviation / blurred_deviation[0];
  }
  return noise;
}

}  // namespace

void FilmGrain(cv::Mat& working, float amount, float size) {
  if (amount <= 0.0F) return;
  const cv::Mat noise =
      Noise(working.size(), static_cast<double>(amount / 100.0F * kStrength), size / 100.0F);
  ForEachRow(working.rows, [&](int y) {
    auto* pixels = working.ptr<float>(y);
    const auto* grain = noise.ptr<float>(y);
    for (int x = 0; x < working.cols; ++x) {
      for (int c = 0; c < kColors; ++c) {
        float& value = pixels[x * kChannels + c];
        value = SaturateUnit(value + grain[x]);
      }
    }
  });
}

}  // namespace lumvik
