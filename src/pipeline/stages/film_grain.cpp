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

// A sum waits for each value before it takes the next, so those of several rows are computed together.
constexpr int kRowsTogether = 4;

void WriteMeans(const float* const* rows, int columns, double* means, double* mean_squares) {
  double sums[kRowsTogether] = {};
  double square_sums[kRowsTogether] = {};
  for (int x = 0; x < columns; ++x) {
    for (int n = 0; n < kRowsTogether; ++n) {
      const auto value = static_cast<double>(rows[n][x]);
      sums[n] += value;
      square_sums[n] += value * value;
    }
  }
  for (int n = 0; n < kRowsTogether; ++n) {
    means[n] = sums[n] / columns;
    mean_squares[n] = square_sums[n] / columns;
  }
}

// Combined from the means of the rows, which are computed on all threads.
double StandardDeviation(const cv::Mat& plane) {
  const int blocks = (plane.rows + kRowsTogether - 1) / kRowsTogether;
  std::vector<double> means(static_cast<size_t>(blocks * kRowsTogether));
  std::vector<double> mean_squares(means.size());
  cv::parallel_for_(cv::Range(0, blocks), [&](const cv::Range& range) {
    for (int y = range.start * kRowsTogether; y < range.end * kRowsTogether; y += kRowsTogether) {
      const float* rows[kRowsTogether];
      for (int n = 0; n < kRowsTogether; ++n) rows[n] = plane.ptr<float>(std::min(y + n, plane.rows - 1));
      WriteMeans(rows, plane.cols, &means[static_cast<size_t>(y)], &mean_squares[static_cast<size_t>(y)]);
    }
  });
  means.resize(static_cast<size_t>(plane.rows));
  mean_squares.resize(means.size());
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
