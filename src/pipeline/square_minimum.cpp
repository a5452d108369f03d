#include "pipeline/square_minimum.h"

#include <algorithm>
#include <limits>
#include <opencv2/core/utility.hpp>
#include <vector>

#include "base/large_image.h"
#include "base/vectorized.h"

namespace lumvik {
namespace {

constexpr float kNothing = std::numeric_limits<float>::infinity();
constexpr int kMinimumColumns = 4 * kMaxLanes;
constexpr int kMinimumStripesPerThread = 4;

// to[i] = min(a[i], b[i]) for a multiple of kMaxLanes values; `to` may be `a`.
template <int lanes>
void Smaller(const float* a, const float* b, float* to, int count) {
  for (int i = 0; i < count; i += lanes) {
    const Lanes<lanes> left = LoadLanes<lanes>(a + i);
    const Lanes<lanes> right = LoadLanes<lanes>(b + i);
    StoreLanes(right < left ? right : left, to + i);
  }
}

int RoundedUp(int count) {
  return (count + kMaxLanes - 1) / kMaxLanes * kMaxLanes;
}

// Calls `reduce(distance)`, which replaces every value by the minimum of itself and the one `distance` after
// it, until each is the minimum of `side` values. The span doubles with each call but the last.
template <typename Reduce>
void ReduceTo(int side, const Reduce& reduce) {
  int width = 1;
  for (; width * 2 <= side; width *= 2) reduce(width);
  if (width < side) reduce(side - width);
}

// The horizontal minimum around each value of a row. `line` is scratch memory.
void AlongRow(const float* row, int columns, int side, std::vector<float>& line, float* smallest) {
  const int count = RoundedUp(columns + side);
  const int room = count + side;
  line.assign(static_cast<size_t>(room), kNothing);
  float* const values = line.data();
  std::copy_n(row, columns, values + side / 2);
  VectorizedByLanes([=](auto lanes) {
    ReduceTo(side, [=](int distance) { Smaller<lanes>(values, values + distance, values, count); });
  });
  std::copy_n(values, columns, smallest);
}

// The vertical minimum around each value in some rows of a strip. `strip` is scratch memory.
void DownStrip(const cv::Mat& plane, int left, const cv::Range& rows, int side, std::vector<float>& strip,
               cv::Mat& smallest) {
  const int columns = std::min(kMinimumColumns, plane.cols - left);
  const int first = rows.start - side / 2;
  int count = rows.size() + side - 1;
  strip.assign(static_cast<size_t>(count) * size_t{kMinimumColumns}, kNothing);
  const auto row_at = [&](int i) { return strip.data() + static_cast<ptrdiff_t>(i) * kMinimumColumns; };
  for (int i = 0; i < count; ++i) {
    const int y = first + i;
    if (y >= 0 && y < plane.rows) std::copy_n(plane.ptr<float>(y) + left, columns, row_at(i));
  }
  VectorizedByLanes([&](auto lanes) {
    ReduceTo(side, [&](int distance) {
      count -= distance;
      for (int i = 0; i < count; ++i)
        Smaller<lanes>(row_at(i), row_at(i + distance), row_at(i), kMinimumColumns);
    });
  });
  for (int i = 0; i < count; ++i) std::copy_n(row_at(i), columns, smallest.ptr<float>(rows.start + i) + left);
}

}  // namespace

cv::Mat SquareMinimum(const cv::Mat& plane, int side) {
  const int stripes = cv::getNumThreads() * kMinimumStripesPerThread;
  cv::Mat along_rows = LargeImage(plane.size(), CV_32F);
  cv::parallel_for_(
      cv::Range(0, plane.rows),
      [&](const cv::Range& rows) {
        std::vector<float> line;
        for (int y = rows.start; y < rows.end; ++y) {
          AlongRow(plane.ptr<float>(y), plane.cols, side, line, along_rows.ptr<float>(y));
        }
      },
      stripes);
  cv::Mat smallest = LargeImage(plane.size(), CV_32F);
  cv::parallel_for_(
      cv::Range(0, plane.rows),
      [&](const cv::Range& rows) {
        std::vector<float> strip;
        for (int x = 0; x < plane.cols; x += kMinimumColumns)
          DownStrip(along_rows, x, rows, side, strip, smallest);
      },
      stripes);
  return smallest;
}

}  // namespace lumvik
