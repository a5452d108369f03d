#include "pipeline/gaussian_blur.h"

#include <algorithm>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>
#include <utility>

#include "base/large_image.h"

namespace lumvik {

SymmetricKernel GaussianKernel(double sigma) {
  CV_Assert(sigma > 0);
  constexpr double kReachInSigmas = 4;  // OpenCV's for float images
  return GaussianKernel(cvRound(sigma * kReachInSigmas * 2 + 1) | 1, sigma);
}

SymmetricKernel GaussianKernel(int size, double sigma) {
  const cv::Mat kernel = cv::getGaussianKernel(size, sigma, CV_32F);
  return {kernel.begin<float>() + size / 2, kernel.end<float>()};
}

Columns Columns::Widened(int reach, int frame_columns) const {
  const int left = std::max(first - reach, 0) / kMaxLanes * kMaxLanes;
  const int right = (last + reach + kMaxLanes - 1) / kMaxLanes * kMaxLanes;
  return {left, std::min(right, frame_columns)};
}

RowBlur::RowBlur(SymmetricKernel window, int frame_columns, int max_columns)
    : kernel_(std::move(window)),
      frame_columns_(frame_columns),
      rows_(2 * kernel_.size() - 1 + kRowsAtOnce - 1),
      sums_(kRowsAtOnce, 2 * WidenedColumns(max_columns, Radius(kernel_)), CV_32F) {}

void RowBlur::AddDown(Columns columns) {
  const int reach = Radius(kernel_);
  const Columns held = columns.Widened(reach, frame_columns_);
  float* sums[kRowsAtOnce];
  for (int n = 0; n < kRowsAtOnce; ++n) sums[n] = SumsOf(n, columns) + held.first - columns.first;
  VectorizedByLanes([&, rows = rows_.data() + reach](auto lanes) {
    AddWeightedDown<lanes>(kernel_, rows, sums, held.Count());
  });
}

void RowBlur::AddAlong(int row, Columns columns, float* blurred) {
  const int reach = Radius(kernel_);
  const Columns held = columns.Widened(reach, frame_columns_);
  float* const sums = SumsOf(row, columns);
  const auto mirror = [&](int x) {
    const int inside = Mirrored(x, frame_columns_);
    sums[x - columns.first] = sums[inside - columns.first];
  };
  for (int x = columns.first - reach; x < held.first; ++x) mirror(x);
  for (int x = held.last; x < columns.last + reach; ++x) mirror(x);
  VectorizedByLanes([&](auto lanes) {
    const float* own_sums = sums;
    AddWeighted<lanes>(
        kernel_, own_sums, [=](int k) { return std::pair(own_sums - k, own_sums + k); }, columns.Count(),
        blurred);
  });
}

cv::Mat Blurred(const cv::Mat& plane, const SymmetricKernel& window) {
  cv::Mat blurred = LargeImage(plane.size(), CV_32F);
  const auto blur_strip = [&](RowBlur& blur, Columns columns, const cv::Range& rows) {
    const int first_held = columns.Widened(Radius(window), plane.cols).first;
    for (int y = rows.start; y < rows.end; y += kRowsAtOnce) {
      const auto row_at = [&](int i) {
        const int inside = Mirrored(y + i, plane.rows);
        return plane.ptr<float>(inside) + first_held;
      };
      const auto blurred_at = [&](int n) { return blurred.ptr<float>(y + n) + columns.first; };
      blur.Blur(row_at, columns, std::min(kRowsAtOnce, rows.end - y), blurred_at);
    }
  };
  cv::parallel_for_(
      cv::Range(0, plane.rows),
      [&](const cv::Range& rows) {
        RowBlur blur(window, plane.cols, kStripColumns);
        for (int x = 0; x < plane.cols; x += kStripColumns) {
          blur_strip(blur, {x, std::min(x + kStripColumns, plane.cols)}, rows);
        }
      },
      cv::getNumThreads() * kStripesPerThread);
  return blurred;
}

}  // namespace lumvik
