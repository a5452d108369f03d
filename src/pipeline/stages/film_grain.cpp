#include "pipeline/stages/film_grain.h"

#include <algorithm>
#include <cmath>
#include <opencv2/core/utility.hpp>
#include <vector>

#include "base/large_image.h"
#include "pipeline/normal_noise.h"
#include "pipeline/pixel_math.h"
#include "pipeline/wide_gaussian.h"

namespace lumvik {
namespace {

constexpr float kGrainStrength = 0.05F;
constexpr float kMinSize = 0.01F;
constexpr double kMinDeviation = 1e-6;

// Combined from the deviations of the rows, which are computed on all threads.
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

double DeviationOf(float amount) {
  return static_cast<double>(amount / 100.0F * kGrainStrength);
}

void AddGrain(const RowPart& row, const float* noise, float gain) {
  for (int i = 0; i < row.columns; ++i) {
    const float grain = noise[i] * gain;
    row.red[i] = SaturateUnit(row.red[i] + grain);
    row.green[i] = SaturateUnit(row.green[i] + grain);
    row.blue[i] = SaturateUnit(row.blue[i] + grain);
  }
}

}  // namespace

std::future<GrainNoise> DrawGrain(cv::Size frame, float amount) {
  // Deferred as well if no thread can be started.
  const auto policy =
      cv::getNumThreads() > 1 ? std::launch::async | std::launch::deferred : std::launch::deferred;
  // It draws from a copy of the generator: cv::parallel_for_ resets that of the calling thread.
  return std::async(policy, [noise = GrainNoise{LargeImage(frame, CV_32F), cv::theRNG()},
                             deviation = DeviationOf(amount)]() mutable {
    FillWithNoise(noise.values, deviation, noise.generator);
    return noise;
  });
}

RowTransform FilmGrain(const GrainNoise& drawn, float amount, float size) {
  cv::theRNG() = drawn.generator;
  cv::Mat noise = drawn.values;
  const float share = size / 100.0F;
  float gain = 1;  // restores the strength of the noise before smoothing
  if (share > kMinSize) {
    noise = Blurred(noise, Gaussian::OfSigma(static_cast<double>(2.0F * share + 0.5F)));
    const double blurred_deviation = StandardDeviation(noise);
    if (blurred_deviation > kMinDeviation) {
      gain = static_cast<float>(DeviationOf(amount) / blurred_deviation);
    }
  }
  return MakeRowTransform([gain](const RowPart& row, const float* values) { AddGrain(row, values, gain); },
                          noise);
}

}  // namespace lumvik
