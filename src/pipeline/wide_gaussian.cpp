#include "pipeline/wide_gaussian.h"

#include <algorithm>
#include <cmath>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>
#include <utility>

#include "base/large_image.h"
#include "base/vectorized.h"
#include "pipeline/gaussian_blur.h"
#include "pipeline/mirrored_border.h"

namespace lumvik {
namespace {

// The small Gaussians, in grid steps. Wide enough that what the grid cannot represent is below 1e-6, narrow
// enough that a pixel is interpolated from eight grid points.
constexpr double kSmallSigma = 0.8;
constexpr int kSmallRadius = 4;
constexpr int kTaps = 2 * kSmallRadius;        // grid points around a pixel
constexpr int kTapsBefore = kSmallRadius - 1;  // of them before the last one at or left of it

constexpr int kCommonStep = 2;  // used by clarity

// The coarse Gaussian must span enough grid points to keep its shape.
constexpr double kMinCoarseSigma = 8.0;

constexpr int kMinSamplesPerStep = 8;

// With a sigma of twice the longest side, everything but the mean of a mirrored image is attenuated to 3e-9.
Gaussian HeldToImage(const Gaussian& blur, cv::Size size) {
  const double limit = std::max(2.0 * std::max(size.width, size.height), Gaussian::kMinWideSigma);
  return blur.Sigma() > limit ? Gaussian::OfSigma(limit) : blur;
}

int StepFor(double sigma) {
  int step = 1;
  while (step * 2 * kMinCoarseSigma <= sigma) step *= 2;
  return step;
}

using Weights = std::vector<float>;

// The weights of the kTaps points around a pixel that lies `phase` pixels after a grid point. Their sum is 1,
// so that a uniform image stays as it is.
Weights Taps(int phase, int step) {
  double taps[kTaps];
  double sum = 0;
  for (int i = 0; i < kTaps; ++i) {
    const double distance = i - kTapsBefore - static_cast<double>(phase) / step;
    taps[i] = std::exp(-distance * distance / (2 * kSmallSigma * kSmallSigma));
    sum += taps[i];
  }
  Weights weights;
  for (const double tap : taps) weights.push_back(static_cast<float>(tap / sum));
  return weights;
}

// The coarse kernel whose sum of small bells, one at every grid point, comes nearest to OpenCV's kernel.
SymmetricKernel CoarseKernel(const Gaussian& blur, int step) {
  const int radius = blur.Radius();
  const cv::Mat kernel = cv::getGaussianKernel(2 * radius + 1, blur.Sigma(), CV_64F);
  const double bell_sigma = kSmallSigma * step * std::sqrt(2.0);
  const auto bell = [&](int distance) {
    return std::exp(-distance * distance / (2 * bell_sigma * bell_sigma)) /
           (bell_sigma * std::sqrt(2 * CV_PI));
  };
  const int coarse_radius = (radius + step - 1) / step;
  // With a large step, fitting every few pixels gives the same kernel in a fraction of the time.
  const int stride = std::max(step / kMinSamplesPerStep, 1);
  const int samples = (radius + kTaps * step) / stride;
  cv::Mat bells(samples, coarse_radius + 1, CV_64F);
  cv::Mat wanted(samples, 1, CV_64F);
  for (int i = 0; i < samples; ++i) {
    const int n = i * stride;
    wanted.at<double>(i) = n <= radius ? kernel.at<double>(radius + n) : 0;
    for (int k = 0; k <= coarse_radius; ++k) {
      bells.at<double>(i, k) = bell(n - k * step) + (k == 0 ? 0 : bell(n + k * step));
    }
  }
  cv::Mat weights;
  cv::solve(bells, wanted, weights, cv::DECOMP_QR);
  const double sum = 2 * cv::sum(weights)[0] - weights.at<double>(0);
  SymmetricKernel coarse;
  for (int k = 0; k <= coarse_radius; ++k) coarse.push_back(static_cast<float>(weights.at<double>(k) / sum));
  return coarse;
}

// out[n * room + i] = sum of taps[n][k] * rows[k][i] over k, for several n together, since they share the
// rows.
template <int lanes, size_t kOutputs>
void AddTaps(const Weights* taps, const float* const* rows, int columns, int room, float* __restrict out) {
  Lanes<lanes> weights[kOutputs][kTaps] = {};
  for (size_t n = 0; n < kOutputs; ++n) {
    for (size_t k = 0; k < kTaps; ++k) weights[n][k] += taps[n][k];
  }
  int x = 0;
  for (; x + lanes <= columns; x += lanes) {
    Lanes<lanes> sums[kOutputs];
    for (size_t n = 0; n < kOutputs; ++n) sums[n] = LoadLanes<lanes>(rows[0] + x) * weights[n][0];
    for (size_t k = 1; k < kTaps; ++k) {
      const Lanes<lanes> values = LoadLanes<lanes>(rows[k] + x);
      for (size_t n = 0; n < kOutputs; ++n) sums[n] += values * weights[n][k];
    }
    for (size_t n = 0; n < kOutputs; ++n) StoreLanes(sums[n], out + static_cast<int>(n) * room + x);
  }
  for (; x < columns; ++x) {
    for (size_t n = 0; n < kOutputs; ++n) {
      float sum = rows[0][x] * taps[n][0];
      for (size_t k = 1; k < kTaps; ++k) sum += rows[k][x] * taps[n][k];
      out[static_cast<int>(n) * room + x] = sum;
    }
  }
}

// De-interleaves `line`: row p of `phases` receives every step-th value from the p-th on.
inline void Separate(const float* line, int step, int length, float* __restrict phases) {
  for (int phase = 0; phase < step; ++phase) {
    for (int i = 0; i < length; ++i) phases[phase * length + i] = line[i * step + phase];
  }
}

// The inverse, for rows of `most` values.
inline void Interleave(const float* phases, int most, int step, int columns, float* __restrict line) {
  for (int n = 0; n < columns / step; ++n) {
    for (int i = 0; i < step; ++i) line[n * step + i] = phases[i * most + n];
  }
  for (int x = columns / step * step; x < columns; ++x) line[x] = phases[x % step * most + x / step];
}

SymmetricKernel SmallKernel(int step) {
  const int radius = kSmallRadius * step;
  const cv::Mat kernel = cv::getGaussianKernel(2 * radius + 1, kSmallSigma * step, CV_32F);
  return {kernel.begin<float>() + radius, kernel.end<float>()};
}

// Samples the plane, smoothed by the small Gaussian, at the points of the grid.
class Sampler {
 public:
  Sampler(const cv::Mat& plane, int step, int margin, int points)
      : plane_(plane),
        step_(step),
        margin_(margin),
        points_(points),
        kernel_(SmallKernel(step)),
        rows_(2 * kernel_.size() - 1),
        line_(static_cast<size_t>((points + 2 * kSmallRadius) * step)),
        phases_(line_.size()) {
    const int length = points + 2 * kSmallRadius;
    for (int k = 0; k <= 2 * Radius(kernel_); ++k)
      moved_.push_back(phases_.data() + k % step * length + k / step);
  }

  // One row of the grid, vertically first.
  void Sample(int grid_y, float* points) {
    const int radius = Radius(kernel_);
    const int before = margin_ * step_ + radius;
    const float** middle = rows_.data() + radius;
    for (int k = -radius; k <= radius; ++k) {
      const int y = (grid_y - margin_) * step_ + k;
      middle[k] = plane_.ptr<float>(Mirrored(y, plane_.rows));
    }
    float* const first = line_.data() + before;
    VectorizedByLanes([&](auto lanes) { AddSymmetric<lanes>(middle, plane_.cols, first); });
    const int after = static_cast<int>(line_.size()) - before;
    for (int x = -before; x < after; x = x == -1 ? plane_.cols : x + 1) {
      first[x] = first[Mirrored(x, plane_.cols)];
    }
    AlongLine(points);
  }

 private:
  // De-interleaved, so that neighboring grid points have neighboring addresses.
  void AlongLine(float* points) {
    const int length = points_ + 2 * kSmallRadius;
    VectorizedByLanes([&](auto lanes) {
      // With a constant step the compiler shuffles whole vectors.
      if (step_ == kCommonStep) {
        Separate(line_.data(), kCommonStep, length, phases_.data());
      } else {
        Separate(line_.data(), step_, length, phases_.data());
      }
      AddSymmetric<lanes>(moved_.data() + Radius(kernel_), points_, points);
    });
  }

  template <int lanes>
  void AddSymmetric(const float* const* middle, int columns, float* sums) const {
    AddWeighted<lanes>(
        kernel_, middle[0], [=](int k) { return std::pair(middle[-k], middle[k]); }, columns, sums);
  }

  const cv::Mat& plane_;
  int step_;
  int margin_;
  int points_;
  SymmetricKernel kernel_;
  std::vector<const float*> rows_;   // under the kernel
  std::vector<float> line_;          // a row with mirrored ends
  std::vector<float> phases_;        // the same, de-interleaved
  std::vector<const float*> moved_;  // into phases_: from the first value on, from the second on, ...
};

// The points that cover a side of the plane, including the margins.
int PointsFor(int pixels, int step, int margin) {
  return (pixels - 1) / step + 1 + 2 * margin;
}

}  // namespace

WideGaussian::WideGaussian(const cv::Mat& plane, const Gaussian& blur)
    : size_(plane.size()), step_(StepFor(HeldToImage(blur, size_).Sigma())) {
  const SymmetricKernel kernel = CoarseKernel(HeldToImage(blur, size_), step_);
  margin_ = Radius(kernel) + kSmallRadius;
  for (int phase = 0; phase < step_; ++phase) taps_.push_back(Taps(phase, step_));
  cv::Mat grid(PointsFor(plane.rows, step_, margin_), PointsFor(plane.cols, step_, margin_), CV_32F);
  cv::parallel_for_(
      cv::Range(0, grid.rows),
      [&](const cv::Range& rows) {
        Sampler sampler(plane, step_, margin_, grid.cols);
        for (int y = rows.start; y < rows.end; ++y) sampler.Sample(y, grid.ptr<float>(y));
      },
      cv::getNumThreads() * kStripesPerThread);
  // The margins keep what the blur mirrors at the ends of the grid away from the image.
  grid_ = Blurred(grid, kernel);
}

void WideGaussian::Read(int x, int y, PartColumns columns, float* blurred) const {
  const int first_point = x / step_;
  // Rounded up to whole vectors, which the margin of the grid has room for.
  const int points =
      ((x + columns - 1) / step_ - first_point + kTaps + kMaxLanes - 1) / kMaxLanes * kMaxLanes;
  float line[kMaxPart + kTaps + kMaxLanes];
  float same_phase[2 * kMaxPart];
  const float* rows[kTaps];
  for (int k = 0; k < kTaps; ++k) {
    rows[k] = grid_.ptr<float>(y / step_ + margin_ - kTapsBefore + k) + first_point + margin_ - kTapsBefore;
  }
  const float* moved[kTaps];
  for (int k = 0; k < kTaps; ++k) moved[k] = line + k;
  const int most = (columns - 1) / step_ + 1;
  VectorizedByLanes([&](auto lanes) {
    AddTaps<lanes, 1>(&taps_[static_cast<size_t>(y % step_)], rows, points, 0, line);
    // With a constant step the compiler shuffles whole vectors.
    if (step_ == kCommonStep && x % step_ == 0 && columns % step_ == 0) {
      AddTaps<lanes, kCommonStep>(taps_.data(), moved, most, most, same_phase);
      return Interleave(same_phase, most, kCommonStep, columns, blurred);
    }
    for (int i = 0; i < std::min(step_, int{columns}); ++i) {
      const int first = (x + i) / step_ - first_point;
      const float* from[kTaps];
      for (int k = 0; k < kTaps; ++k) from[k] = moved[k] + first;
      AddTaps<lanes, 1>(&taps_[static_cast<size_t>((x + i) % step_)], from, (columns - 1 - i) / step_ + 1, 0,
                        same_phase + i * most);
    }
    Interleave(same_phase, most, step_, columns, blurred);
  });
}

cv::Mat WideGaussian::Plane() const {
  cv::Mat blurred = LargeImage(size_, CV_32F);
  cv::parallel_for_(cv::Range(0, size_.height), [&](const cv::Range& rows) {
    for (int y = rows.start; y < rows.end; ++y) {
      ForEachPart({0, size_.width},
                  [&](int x, PartColumns columns) { Read(x, y, columns, blurred.ptr<float>(y) + x); });
    }
  });
  return blurred;
}

cv::Mat Blurred(const cv::Mat& plane, const Gaussian& blur) {
  return blur.IsWide() ? WideGaussian(plane, blur).Plane() : Blurred(plane, blur.Kernel());
}

}  // namespace lumvik
