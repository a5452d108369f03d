// Gaussian blur of float planes, a row at a time.
#ifndef LUMVIK_PIPELINE_GAUSSIAN_BLUR_H_
#define LUMVIK_PIPELINE_GAUSSIAN_BLUR_H_

#include <opencv2/core.hpp>
#include <vector>

#include "pipeline/symmetric_kernel.h"

namespace lumvik {

// The windows of cv::GaussianBlur on float images: for a sigma, with the size that OpenCV derives from it
// (throws for a sigma that is not positive); for an odd size, with that sigma or the one that it derives.
SymmetricKernel GaussianKernel(double sigma);
SymmetricKernel GaussianKernel(int size, double sigma = 0);

// So many columns are blurred from top to bottom at a time: the rows that a window reaches stay in the second
// cache.
inline constexpr int kStripColumns = 256;

// The rows of a plane are divided into so many parts a thread, so that none waits long for another at the
// end.
inline constexpr int kStripesPerThread = 4;

// The most columns that Widened makes of `columns`.
constexpr int WidenedColumns(int columns, int reach) {
  return (columns + 2 * reach + 3 * kMaxLanes) / kMaxLanes * kMaxLanes;
}

// Columns first..last - 1 of a frame.
struct Columns {
  int first;
  int last;

  int Count() const { return last - first; }
  // With those that a window reaches, and some more so that vectors of them begin at multiples of their size.
  Columns Widened(int reach, int frame_columns) const;
};

// Blurs parts of rows, borders mirrored without their pixel (cv::BORDER_REFLECT_101).
class RowBlur {
 public:
  // For at most so many columns at a time.
  RowBlur(SymmetricKernel window, int frame_columns, int max_columns);

  // Blurs `count` of kRowsAtOnce rows. `row_at(i)` is the row `i` below the first of them, for -reach..reach
  // + kRowsAtOnce - 1: a const float* to the first one of the widened columns. `blurred_at(n)` is where row n
  // goes.
  template <typename RowAt, typename BlurredAt>
  void Blur(const RowAt& row_at, Columns columns, int count, const BlurredAt& blurred_at) {
    const int reach = Radius(kernel_);
    const float** first = rows_.data() + reach;
    for (int i = -reach; i < reach + kRowsAtOnce; ++i) first[i] = row_at(i);
    AddDown(columns);
    for (int n = 0; n < count; ++n) AddAlong(n, columns, blurred_at(n));
  }

 private:
  // That of the first column, so far in that mirrored ones have room and the first held one is well aligned.
  float* SumsOf(int row, Columns columns) {
    return sums_.ptr<float>(row) + WidenedColumns(0, Radius(kernel_)) + columns.first % kMaxLanes;
  }
  void AddDown(Columns columns);
  void AddAlong(int row, Columns columns, float* blurred);

  SymmetricKernel kernel_;
  int frame_columns_;
  std::vector<const float*> rows_;
  cv::Mat sums_;  // down the widened columns
};

// `plane` (CV_32FC1) blurred with the window on all threads. The bytes do not depend on their number.
cv::Mat Blurred(const cv::Mat& plane, const SymmetricKernel& window);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_GAUSSIAN_BLUR_H_
