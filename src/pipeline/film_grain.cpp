#include "pipeline/film_grain.h"

#include <algorithm>
#include <cmath>
#include <opencv2/core/utility.hpp>
#include <vector>

#include "image/large_image.h"
#include "pipeline/gaussian_blur.h"
#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kGrainStrength = 0.05F;
constexpr float kSmallestSize = 0.01F;
constexpr double kSmallestDeviation = 1e-6;

// Of all values, from those of each row, on all threads.
double StandardDeviation(const cv::Mat& plane) {
  const auto rows = static_cast<size_t>(plane.rows);
  std::vector<double> means(rows);
  std::vector<double> mean_squares(rows);
  cv::parallel_for_(cv::Range(0, plane.rows), [&](const cv::Range& range) {
    for (int y = range.start; y < range.end; ++y) {
      cv::Scalar mean;
      cv::Scalar deviation;
      cv::meanStdDev(plane.row(y), mean, deviation);
      means[static_cast<size_t>(y)] = mean[0];
      mean_squares[static_cast<size_t>(y)] = mean[0] * mean[0] + deviation[0] * deviation[0];
    }
  });
  const double mean = cv::mean(means)[0];
  return std::sqrt(std::max(cv::mean(mean_squares)[0] - mean * mean, 0.0));
}

struct Grain {
  cv::Mat noise;
  float gain = 1;  // back to the strength that the noise had before it was smoothed
};

Grain MakeGrain(cv::Size frame, double deviation, float size) {
  Grain grain{LargeImage(frame, CV_32F)};
  cv::randn(grain.noise, 0.0, deviation);
  if (size > kSmallestSize) {
    grain.noise = Blurred(grain.noise, GaussianWindow(static_cast<double>(2.0F * size + 0.5F)));
    const double blurred_deviation = StandardDeviation(grain.noise);
    if (blurred_deviation > kSmallestDeviation) {
      grain.gain = static_cast<float>(deviation / blurred_deviation);
    }
  }
  return grain;
}

void AddGrain(const PixelRow& row, const float* noise, float gain) {
  for (int i = 0; i < row.columns; ++i) {
    const float grain = noise[i] * gain;
    row.red[i] = SaturateUnit(row.red[i] + grain);
    row.green[i] = SaturateUnit(row.green[i] + grain);
    row.blue[i] = SaturateUnit(row.blue[i] + grain);
  }
}

}  // namespace

RowKernel FilmGrain(cv::Size frame, float amount, float size) {
  const Grain grain = MakeGrain(frame, static_cast<double>(amount / 100.0F * kGrainStrength), size / 100.0F);
  return MakeRowKernel(
      [gain = grain.gain](const PixelRow& row, const float* noise) { AddGrain(row, noise, gain); },
      grain.noise);
}

}  // namespace lumvik
