#include "pipeline/gaussian_blur.h"

#include <algorithm>
#include <opencv2/core/utility.hpp>
#include <utility>

#include "base/large_image.h"
#include "pipeline/mirrored_border.h"

namespace lumvik {

Columns Widened(Columns columns, int radius, int frame_columns) {
  const int left = std::max(columns.first - radius, 0) / kMaxLanes * kMaxLanes;
  const int right = (columns.last + radius + kMaxLanes - 1) / kMaxLanes * kMaxLanes;
  return {left, std::min(right, frame_columns)};
}

RowBlur::RowBlur(SymmetricKernel kernel, int frame_columns, int max_columns)
    : kernel_(std::move(kernel)),
      frame_columns_(frame_columns),
      rows_(2 * kernel_.size() - 1 + kRowsPerBlock - 1),
      sums_(kRowsPerBlock, 2 * WidenedColumns(max_columns, Radius(kernel_)), CV_32F) {}

void RowBlur::BlurVertically(Columns columns) {
  const int radius = Radius(kernel_);
  const Columns held = Widened(columns, radius, frame_columns_);
  float* sums[kRowsPerBlock];
  for (int n = 0; n < kRowsPerBlock; ++n) sums[n] = SumsOf(n, columns) + held.first - columns.first;
  VectorizedByLanes([&, rows = rows_.data() + radius](auto lanes) {
    AddWeightedDown<lanes>(kernel_, rows, sums, held.Count());
  });
}

void RowBlur::BlurHorizontally(int row, Columns columns, float* blurred) {
  const int radius = Radius(kernel_);
  const Columns held = Widened(columns, radius, frame_columns_);
  float* const sums = SumsOf(row, columns);
  const auto mirror = [&](int x) {
    const int inside = Mirrored(x, frame_columns_);
    sums[x - columns.first] = sums[inside - columns.first];
  };
  for (int x = columns.first - radius; x < held.first; ++x) mirror(x);
  for (int x = held.last; x < columns.last + radius; ++x) mirror(x);
  VectorizedByLanes([&](auto lanes) {
    const float* own_sums = sums;
    AddWeighted<lanes>(
        kernel_, own_sums, [=](int k) { return std::pair(own_sums - k, own_sums + k); }, columns.Count(),
        blurred);
  });
}

cv::Mat Blurred(const cv::Mat& plane, const SymmetricKernel& kernel) {
  cv::Mat blurred = LargeImage(plane.size(), CV_32F);
  const auto blur_strip = [&](RowBlur& blur, Columns columns, const cv::Range& rows) {
    const int first_held = Widened(columns, Radius(kernel), plane.cols).first;
    for (int y = rows.start; y < rows.end; y += kRowsPerBlock) {
      const auto row_at = [&](int i) {
        const int inside = Mirrored(y + i, plane.rows);
        return plane.ptr<float>(inside) + first_held;
      };
      const auto blurred_at = [&](int n) { return blurred.ptr<float>(y + n) + columns.first; };
      blur.Blur(row_at, columns, std::min(kRowsPerBlock, rows.end - y), blurred_at);
    }
  };
  cv::parallel_for_(
      cv::Range(0, plane.rows),
      [&](const cv::Range& rows) {
        RowBlur blur(kernel, plane.cols, kStripColumns);
        for (int x = 0; x < plane.cols; x += kStripColumns) {
          blur_strip(blur, {x, std::min(x + kStripColumns, plane.cols)}, rows);
        }
      },
      cv::getNumThreads() * kStripesPerThread);
  return blurred;
}

}  // namespace lumvik
