#include "pipeline/sliding_gaussian.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "image/large_image.h"
#include "image/vectorized.h"

namespace lumvik {
namespace {

constexpr int kCosines = 6;  // the first is the constant

// So many columns slide down together: their sums stay in the first cache.
constexpr int kStrip = 64;

// One cosine of the window.
struct Cosine {
  std::vector<double> samples;  // from the middle outward
  double next = 0;              // twice the cosine of its frequency: the recursion's factor of the last sum
  double edge = 0;              // the last sample: the factor of what enters and leaves
};

struct Window {
  int radius = 0;
  std::array<Cosine, kCosines> cosines;
};

// The window is symmetric over 2 radius + 1 samples, so these cosines are orthogonal on it and the best
// weights are plain projections.
Window MakeWindow(double sigma) {
  const int radius = cvRound(sigma * 8 + 1) / 2;
  const int size = 2 * radius + 1;
  const cv::Mat kernel = cv::getGaussianKernel(size, sigma, CV_64F);
  Window window;
  window.radius = radius;
  for (int m = 0; m < kCosines; ++m) {
    const double frequency = 2 * CV_PI * m / size;
    double projection = 0;
    for (int k = -radius; k <= radius; ++k)
      projection += kernel.at<double>(k + radius) * std::cos(frequency * k);
    const double weight = projection * (m == 0 ? 1 : 2) / size;
    Cosine& cosine = window.cosines[static_cast<size_t>(m)];
    for (int k = 0; k <= radius; ++k) cosine.samples.push_back(weight * std::cos(frequency * k));
    cosine.next = 2 * std::cos(frequency);
    cosine.edge = cosine.samples.back();
  }
  return window;
}

// The weighted sums over the window of each column in a strip, at one row and at the row before.
struct Sums {
  double at[kCosines][kStrip];
  double before[kCosines][kStrip];
};

void AddSample(const float* samples, double factor, int columns, double* sums) {
  for (int x = 0; x < columns; ++x) sums[x] += factor * static_cast<double>(samples[x]);
}

void WriteSums(const Sums& sums, int columns, float* out) {
  for (int x = 0; x < columns; ++x) {
    double total = 0;
    for (const auto& at : sums.at) total += at[x];
    out[x] = static_cast<float>(total);
  }
}

// To the next row: F(y + 1) = 2 cos(w) F(y) - F(y - 1) + cos(w r) (what enters - what is left behind).
void Slide(const Cosine& cosine, const double* change, int columns, double* __restrict at,
           double* __restrict before) {
  for (int x = 0; x < columns; ++x) {
    const double next = cosine.next * at[x] - before[x] + cosine.edge * change[x];
    before[x] = at[x];
    at[x] = next;
  }
}

// Blurs the columns of a strip along the rows. Row y of the result is written to `out(y)`.
class StripBlur {
 public:
  StripBlur(const cv::Mat& plane, const Window& window, int left)
      : plane_(plane), window_(window), left_(left), columns_(std::min(kStrip, plane.cols - left)) {
    Start(0, sums_.at);
    Start(-1, sums_.before);
  }

  int Columns() const { return columns_; }
  void Write(float* out) const { WriteSums(sums_, columns_, out); }

  void Advance(int y) {
    const int r = window_.radius;
    const float* entering = Row(y + r + 1);
    const float* leaving = Row(y - r - 1);
    const float* last = Row(y + r);
    const float* first = Row(y - r);
    double change[kStrip];
    for (int x = 0; x < columns_; ++x) {
      change[x] = (static_cast<double>(entering[x]) - static_cast<double>(last[x])) +
                  (static_cast<double>(leaving[x]) - static_cast<double>(first[x]));
    }
    for (size_t m = 0; m < kCosines; ++m) {
      Slide(window_.cosines[m], change, columns_, sums_.at[m], sums_.before[m]);
    }
  }

 private:
  // The row of the mirrored plane.
  const float* Row(int y) const {
    return plane_.ptr<float>(cv::borderInterpolate(y, plane_.rows, cv::BORDER_REFLECT_101)) + left_;
  }

  void Start(int y, double (*sums)[kStrip]) const {
    for (size_t m = 0; m < kCosines; ++m) {
      const Cosine& cosine = window_.cosines[m];
      std::fill_n(sums[m], kStrip, 0.0);
      for (int k = -window_.radius; k <= window_.radius; ++k) {
        AddSample(Row(y + k), cosine.samples[static_cast<size_t>(std::abs(k))], columns_, sums[m]);
      }
    }
  }

  const cv::Mat& plane_;
  const Window& window_;
  int left_;
  int columns_;
  Sums sums_{};
};

// A square of the result waits until it is full, so that it is turned in the cache.
void BlurStrip(const cv::Mat& plane, const Window& window, int left, cv::Mat& turned) {
  StripBlur strip(plane, window, left);
  float square[kStrip][kStrip];
  for (int top = 0; top < plane.rows; top += kStrip) {
    const int rows = std::min(kStrip, plane.rows - top);
    for (int i = 0; i < rows; ++i) {
      strip.Write(square[i]);
      strip.Advance(top + i);
    }
    for (int x = 0; x < strip.Columns(); ++x) {
      float* out = turned.ptr<float>(left + x) + top;
      for (int i = 0; i < rows; ++i) out[i] = square[i][x];
    }
  }
}

// Along the columns, with rows and columns exchanged: the second time they are back in place.
cv::Mat BlurredAndTurned(const cv::Mat& plane, const Window& window) {
  cv::Mat turned = LargeImage({plane.rows, plane.cols}, CV_32F);
  const int strips = (plane.cols + kStrip - 1) / kStrip;
  cv::parallel_for_(cv::Range(0, strips), [&](const cv::Range& range) {
    for (int strip = range.start; strip < range.end; ++strip) {
      Vectorized([&] { BlurStrip(plane, window, strip * kStrip, turned); });
    }
  });
  return turned;
}

}  // namespace

cv::Mat SlidingGaussian(const cv::Mat& plane, double sigma) {
  const Window window = MakeWindow(sigma);
  return BlurredAndTurned(BlurredAndTurned(plane, window), window);
}

}  // namespace lumvik
