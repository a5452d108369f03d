#include "reference/film_grain.h"

#include <opencv2/imgproc.hpp>
#include <vector>

#include "reference/clamp.h"

namespace lumvik::reference {
namespace {

// Scales the noise back to the deviation that the blur took from it.
void CoarsenNoise(cv::Mat& noise, float size, double deviation) {
  const float sigma = 2.0F * size + 0.5F;
  cv::GaussianBlur(noise, noise, cv::Size(0, 0), sigma, 0, cv::BORDER_REFLECT_101);
  cv::Scalar mean;
  cv::Scalar blurred_deviation;
  cv::meanStdDev(noise, mean, blurred_deviation);
  if (blurred_deviation[0] > 1e-6) noise = noise * (deviation / blurred_deviation[0]);
}

}  // namespace

void FilmGrain(cv::Mat& working, const Adjustments& adjustments) {
  if (adjustments.grain_amount <= 0) return;
  const double deviation = adjustments.grain_amount / 100.0F * 0.05F;
  const float size = adjustments.grain_size / 100.0F;
  cv::Mat noise(working.size(), CV_32F);
  cv::randn(noise, 0, deviation);
  if (size > 0.01F) CoarsenNoise(noise, size, deviation);
  std::vector<cv::Mat> planes;
  cv::split(working, planes);
  for (size_t c = 0; c < 3; ++c) {
    planes[c] = planes[c] + noise;
    ClampPlane(planes[c]);
  }
  cv::merge(planes, working);
}

}  // namespace lumvik::reference
