#include "pipeline/scaled_blur.h"

#include <algorithm>
#include <cmath>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "base/vectorized.h"
#include "pipeline/gaussian.h"
#include "pipeline/mirrored_border.h"
#include "pipeline/row_part.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace lumvik {
namespace {

// The rows of a tile under the kernel stay in L2.
constexpr int kBlurTileColumns = 1024;
constexpr int kBlurStripesPerThread = 2;
constexpr int kUnrolled = 4;  // vectors

// sums += values * factor, rounded once. With intrinsics, because GCC 12 keeps vectors that it made of single
// calls of std::fma in memory.
template <int lanes>
void AddProduct(const Lanes<lanes>& values, float factor, Lanes<lanes>& sums) {
  for (int i = 0; i < lanes; ++i) sums[i] = std::fma(values[i], factor, sums[i]);
}

#if defined(__x86_64__)

template <>
[[gnu::target("avx2,fma")]] inline void AddProduct<8>(const Lanes<8>& values, float factor, Lanes<8>& sums) {
  sums = _mm256_fmadd_ps(values, _mm256_set1_ps(factor), sums);
}

template <>
[[gnu::target("avx512f")]] inline void AddProduct<16>(const Lanes<16>& values, float factor,
                                                      Lanes<16>& sums) {
  sums = _mm512_fmadd_ps(values, _mm512_set1_ps(factor), sums);
}

#endif

// With the instruction, because MinGW's std::fma rounds twice.
#if defined(__x86_64__)
[[gnu::target("avx2,fma")]]
#endif
void ScaleFused(const float* values, float factor, float offset, int count, float* scaled) {
  for (int i = 0; i < count; ++i) scaled[i] = std::fma(values[i], factor, offset);
}

// Sums along a row in OpenCV's order, from left to right. The kernel's first sample is at `line`, `columns`
// is a multiple of kUnrolled vectors.
template <int lanes>
void SumAlong(const SymmetricKernel& kernel, const float* line, int columns, float* sums) {
  const int radius = Radius(kernel);
  for (int x = 0; x < columns; x += kUnrolled * lanes) {
    Lanes<lanes> added[kUnrolled];
    for (int v = 0; v < kUnrolled; ++v) {
      added[v] = LoadLanes<lanes>(line + x + v * lanes) * kernel[static_cast<size_t>(radius)];
    }
    for (int k = 1 - radius; k <= radius; ++k) {
      const float* const at = line + x + radius + k;
      const float weight = kernel[static_cast<size_t>(std::abs(k))];
      for (int v = 0; v < kUnrolled; ++v)
        AddProduct<lanes>(LoadLanes<lanes>(at + v * lanes), weight, added[v]);
    }
    for (int v = 0; v < kUnrolled; ++v) StoreLanes(added[v], sums + x + v * lanes);
  }
}

// Sums down `count` rows at one vector of columns from x on, in OpenCV's order, from the center outward. One
// step further out a row's neighbors are those of the next row, except for the outermost.
template <int lanes, int count>
void SumDown(const SymmetricKernel& kernel, const float* const* rows, int x, float* const* sums) {
  Lanes<lanes> above[count];
  Lanes<lanes> below[count];
  Lanes<lanes> added[count];
  for (int n = 0; n < count; ++n) {
    above[n] = below[n] = LoadLanes<lanes>(rows[n] + x);
    added[n] = above[n] * kernel[0];
  }
  for (int k = 1; k <= Radius(kernel); ++k) {
    for (int n = count - 1; n > 0; --n) above[n] = above[n - 1];
    for (int n = 0; n < count - 1; ++n) below[n] = below[n + 1];
    above[0] = LoadLanes<lanes>(rows[-k] + x);
    below[count - 1] = LoadLanes<lanes>(rows[count - 1 + k] + x);
    const float weight = kernel[static_cast<size_t>(k)];
    for (int n = 0; n < count; ++n) AddProduct<lanes>(above[n] + below[n], weight, added[n]);
  }
  for (int n = 0; n < count; ++n) StoreLanes(added[n], sums[n] + x);
}

// Some columns of the result, block by block downward.
class BlurTile {
 public:
  BlurTile(const cv::Mat& plane, Columns columns, const LinearScale& scale, const SymmetricKernel& kernel)
      : plane_(plane),
        columns_(columns),
        scale_(scale),
        kernel_(kernel),
        radius_(Radius(kernel)),
        held_rows_(std::min(2 * radius_ + kRowsPerBlock, plane.rows)),
        padded_((columns.Count() + kStep - 1) / kStep * kStep),
        line_(static_cast<size_t>(padded_ + 2 * radius_)),
        held_(held_rows_, padded_, CV_32F),
        sums_(kRowsPerBlock, padded_, CV_32F) {}

  void Write(const cv::Range& rows, cv::Mat& blurred) {
    int next = std::max(rows.start - radius_, 0);
    for (int y = rows.start; y < rows.end; y += kRowsPerBlock) {
      for (; next < std::min(y + kRowsPerBlock + radius_, plane_.rows); ++next) Hold(next);
      SumBlock(y);
      for (int n = 0; n < std::min(kRowsPerBlock, rows.end - y); ++n) {
        std::copy_n(sums_.ptr<float>(n), columns_.Count(), blurred.ptr<float>(y + n) + columns_.first);
      }
    }
  }

 private:
  static constexpr int kStep = kUnrolled * kMaxLanes;

  float* HeldRow(int y) { return held_.ptr<float>(y % held_rows_); }

  // Scales a row with its mirrored ends, and blurs it.
  void Hold(int y) {
    const auto* const row = plane_.ptr<float>(y);
    const int first = columns_.first - radius_;
    const int last = columns_.last + radius_;
    const int left = std::max(first, 0);
    const int right = std::min(last, plane_.cols);
    const auto factor = static_cast<float>(scale_.factor);
    const auto offset = static_cast<float>(scale_.offset);
    const auto mirror = [&](int x) {
      ScaleFused(row + Mirrored(x, plane_.cols), factor, offset, 1, &line_[static_cast<size_t>(x - first)]);
    };
    for (int x = first; x < left; ++x) mirror(x);
    for (int x = right; x < last; ++x) mirror(x);
    float* const line = line_.data();
    VectorizedByLanes([&](auto lanes) {
      ScaleFused(row + left, factor, offset, right - left, line + (left - first));
      SumAlong<lanes>(kernel_, line, padded_, HeldRow(y));
    });
  }

  void SumBlock(int y) {
    std::vector<const float*> rows;
    for (int i = -radius_; i < radius_ + kRowsPerBlock; ++i)
      rows.push_back(HeldRow(Mirrored(y + i, plane_.rows)));
    float* sums[kRowsPerBlock];
    for (int n = 0; n < kRowsPerBlock; ++n) sums[n] = sums_.ptr<float>(n);
    VectorizedByLanes([&, first = rows.data() + radius_](auto lanes) {
      // Three vectors a row have to fit in the registers.
      constexpr int kTogether = lanes / 2;
      for (int n = 0; n < kRowsPerBlock; n += kTogether) {
        for (int x = 0; x < padded_; x += lanes) SumDown<lanes, kTogether>(kernel_, first + n, x, sums + n);
      }
    });
  }

  const cv::Mat& plane_;
  Columns columns_;
  LinearScale scale_;
  const SymmetricKernel& kernel_;
  int radius_;
  int held_rows_;
  int padded_;               // columns
  std::vector<float> line_;  // scaled
  cv::Mat held_;             // blurred horizontally
  cv::Mat sums_;
};

void BlurFused(const cv::Mat& plane, const LinearScale& scale, double sigma, cv::Mat& blurred) {
  const SymmetricKernel kernel = Gaussian::OfSigma(sigma).Kernel();
  cv::parallel_for_(
      cv::Range(0, plane.rows),
      [&](const cv::Range& rows) {
        for (int x = 0; x < plane.cols; x += kBlurTileColumns) {
          BlurTile(plane, {x, std::min(x + kBlurTileColumns, plane.cols)}, scale, kernel)
              .Write(rows, blurred);
        }
      },
      cv::getNumThreads() * kBlurStripesPerThread);
}

// OpenCV's blur runs on one thread, but given a range of rows it reads the rows around them.
void BlurByOpenCv(cv::Mat& plane, const LinearScale& scale, double sigma, cv::Mat& blurred) {
  const auto for_stripes = [&](int stripes, const auto& work) {
    cv::parallel_for_(cv::Range(0, plane.rows), work, stripes);
  };
  for_stripes(cv::getNumThreads(), [&](const cv::Range& rows) {
    cv::Mat stripe = plane.rowRange(rows);
    stripe.convertTo(stripe, CV_32F, scale.factor, scale.offset);
  });
  // The last bits of a single column depend on the number of rows; those of wider planes do not.
  for_stripes(plane.cols == 1 ? 1 : cv::getNumThreads(), [&](const cv::Range& rows) {
    cv::Mat stripe = blurred.rowRange(rows);
    cv::GaussianBlur(plane.rowRange(rows), stripe, cv::Size(), sigma);
  });
}

// Asks OpenCV itself, because it depends on its version, its build and the processor.
bool OpenCvBlursFused() {
  constexpr double kSigma = 5;
  const LinearScale scale = {-0.7, 1.0};
  cv::Mat plane(45, 69, CV_32F);
  cv::RNG(1).fill(plane, cv::RNG::UNIFORM, 0, 1);
  cv::Mat fused(plane.size(), CV_32F);
  cv::Mat expected(plane.size(), CV_32F);
  BlurFused(plane, scale, kSigma, fused);
  BlurByOpenCv(plane, scale, kSigma, expected);
  return cv::norm(fused, expected, cv::NORM_INF) == 0;
}

}  // namespace

bool CanBlurFused() {
  if (BestInstructionSet() == InstructionSet::kBaseline) return false;
  static const bool kFused = OpenCvBlursFused();
  return kFused;
}

void ScaleAndBlur(cv::Mat& plane, const LinearScale& scale, double sigma, cv::Mat& blurred) {
  // OpenCV blurs a single row or column in another order.
  const bool is_line = plane.rows == 1 || plane.cols == 1;
  if (!is_line && CanBlurFused()) {
    BlurFused(plane, scale, sigma, blurred);
  } else {
    BlurByOpenCv(plane, scale, sigma, blurred);
  }
}

}  // namespace lumvik
