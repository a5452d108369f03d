// Blur of float planes by a symmetric kernel, borders mirrored (cv::BORDER_REFLECT_101).
#ifndef LUMVIK_PIPELINE_GAUSSIAN_BLUR_H_
#define LUMVIK_PIPELINE_GAUSSIAN_BLUR_H_

#include <opencv2/core.hpp>
#include <vector>

#include "pipeline/gaussian.h"
#include "pipeline/row_part.h"

namespace lumvik {

// Columns per strip, which is blurred from top to bottom: the rows that a kernel covers stay in L2.
inline constexpr int kStripColumns = 256;

// Stripes of rows per thread, small enough that no thread waits long for the last one.
inline constexpr int kStripesPerThread = 4;

// The columns together with those that a kernel covers, rounded outward so that vectors are aligned.
Columns Widened(Columns columns, int radius, int frame_columns);

// The most columns that Widened makes of `columns`.
constexpr int WidenedColumns(int columns, int radius) {
  return (columns + 2 * radius + 3 * kMaxLanes) / kMaxLanes * kMaxLanes;
}

// Blurs blocks of kRowsPerBlock rows.
class RowBlur {
 public:
  RowBlur(SymmetricKernel kernel, int frame_columns, int max_columns);

  // Blurs the first `count` rows of a block. `row_at(i)` is row i relative to the block's first one, for
  // -radius <= i < radius + kRowsPerBlock: a const float* to the first of the widened columns.
  // `blurred_at(n)` is where row n goes.
  template <typename RowAt, typename BlurredAt>
  void Blur(const RowAt& row_at, Columns columns, int count, const BlurredAt& blurred_at) {
    const int radius = Radius(kernel_);
    const float** first = rows_.data() + radius;
    for (int i = -radius; i < radius + kRowsPerBlock; ++i) first[i] = row_at(i);
    BlurVertically(columns);
    for (int n = 0; n < count; ++n) BlurHorizontally(n, columns, blurred_at(n));
  }

 private:
  // The sum at the first column. Mirrored columns have room before it, and vectors are aligned.
  float* SumsOf(int row, Columns columns) {
    return sums_.ptr<float>(row) + WidenedColumns(0, Radius(kernel_)) + columns.first % kMaxLanes;
  }
  void BlurVertically(Columns columns);
  void BlurHorizontally(int row, Columns columns, float* blurred);

  SymmetricKernel kernel_;
  int frame_columns_;
  std::vector<const float*> rows_;
  cv::Mat sums_;  // vertical, of the widened columns
};

// `plane` (CV_32FC1) blurred by the kernel on all threads. The bytes do not depend on their number.
cv::Mat Blurred(const cv::Mat& plane, const SymmetricKernel& kernel);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_GAUSSIAN_BLUR_H_
