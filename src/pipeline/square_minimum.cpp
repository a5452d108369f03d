#include "pipeline/square_minimum.h"

#include <algorithm>
#include <limits>
#include <opencv2/core/utility.hpp>
#include <vector>

#include "base/large_image.h"
#include "base/vectorized.h"
#include "pipeline/row_part.h"

namespace lumvik {
namespace {

constexpr float kNothing = std::numeric_limits<float>::infinity();

// The rows of a tile under the square stay in L2.
constexpr int kMinimumColumns = 1024;
constexpr int kMinimumStripesPerThread = 2;

template <int lanes>
[[gnu::always_inline]] inline Lanes<lanes> Smaller(const Lanes<lanes>& left, const Lanes<lanes>& right) {
  return right < left ? right : left;
}

// Replaces every value by the minimum of itself and the one `distance` after it. `count` is a multiple of
// kMaxLanes.
template <int lanes>
void ReduceLine(float* values, int distance, int count) {
  for (int i = 0; i < count; i += lanes) {
    StoreLanes(Smaller<lanes>(LoadLanes<lanes>(values + i), LoadLanes<lanes>(values + i + distance)),
               values + i);
  }
}

int RoundedUp(int count) {
  return (count + kMaxLanes - 1) / kMaxLanes * kMaxLanes;
}

// The minimum over squares in some columns of a plane, row by row. The rows are divided into blocks as high
// as the square, which thus covers the last rows of one block and the first of the next: the former have been
// reduced from the end of their block upward, the latter are reduced as they come. Van Herk, A fast algorithm
// for local minimum and maximum filters, 1992.
class MinimumTile {
 public:
  MinimumTile(const cv::Mat& plane, Columns columns, int side)
      : plane_(plane),
        columns_(columns),
        side_(side),
        line_(static_cast<size_t>(RoundedUp(columns.Count() + side) + side), kNothing),
        block_(side + 2, RoundedUp(columns.Count()), CV_32F, cv::Scalar(static_cast<double>(kNothing))) {}

  // Writes the minimum around each value of these rows.
  void Write(const cv::Range& rows, cv::Mat& smallest) {
    for (int i = 0; i < rows.size() + side_ - 1; ++i) {
      ReduceAlongRow(rows.start - side_ / 2 + i);
      const int in_block = i % side_;
      AddRow(in_block);
      if (i >= side_ - 1) {
        std::copy_n(line_.data(), columns_.Count(),
                    smallest.ptr<float>(rows.start + i - side_ + 1) + columns_.first);
      }
      if (in_block == side_ - 1) FinishBlock();
    }
  }

 private:
  // Rows of the current block and, from the one to be added on, of the previous one, reduced. A row that
  // holds nothing follows the last.
  float* BlockRow(int i) { return block_.ptr<float>(i); }
  float* RowsSoFar() { return BlockRow(side_ + 1); }

  // Puts the horizontal minimum around each of the tile's values in row `y` into the line.
  void ReduceAlongRow(int y) {
    std::fill(line_.begin(), line_.end(), kNothing);
    if (y < 0 || y >= plane_.rows) return;
    const int before = columns_.first - side_ / 2;
    const int left = std::max(before, 0);
    const int right = std::min(columns_.last + side_ / 2, plane_.cols);
    float* const values = line_.data();
    std::copy_n(plane_.ptr<float>(y) + left, right - left, values + (left - before));
    VectorizedByLanes([=, side = side_, count = static_cast<int>(line_.size()) - side_](auto lanes) {
      // The span doubles with each step but the last.
      int width = 1;
      for (; width * 2 <= side; width *= 2) ReduceLine<lanes>(values, width, count);
      if (width < side) ReduceLine<lanes>(values, side - width, count);
    });
  }

  // Adds the line to the block, and replaces it by the minimum over the square that ends with it.
  void AddRow(int in_block) {
    float* const line = line_.data();
    float* const own = BlockRow(in_block);
    float* const so_far = RowsSoFar();
    const float* const previous = BlockRow(in_block + 1);
    VectorizedByLanes([=, columns = block_.cols](auto lanes) {
      for (int x = 0; x < columns; x += lanes) {
        const auto values = LoadLanes<lanes>(line + x);
        const auto reduced = Smaller<lanes>(LoadLanes<lanes>(so_far + x), values);
        StoreLanes(values, own + x);
        StoreLanes(reduced, so_far + x);
        StoreLanes(Smaller<lanes>(LoadLanes<lanes>(previous + x), reduced), line + x);
      }
    });
  }

  void FinishBlock() {
    for (int i = side_ - 2; i >= 0; --i) {
      VectorizedByLanes([own = BlockRow(i), next = BlockRow(i + 1), columns = block_.cols](auto lanes) {
        for (int x = 0; x < columns; x += lanes) {
          StoreLanes(Smaller<lanes>(LoadLanes<lanes>(own + x), LoadLanes<lanes>(next + x)), own + x);
        }
      });
    }
    std::fill_n(RowsSoFar(), block_.cols, kNothing);
  }

  const cv::Mat& plane_;
  Columns columns_;
  int side_;
  std::vector<float> line_;
  cv::Mat block_;
};

}  // namespace

cv::Mat SquareMinimum(const cv::Mat& plane, int side) {
  cv::Mat smallest = LargeImage(plane.size(), CV_32F);
  cv::parallel_for_(
      cv::Range(0, plane.rows),
      [&](const cv::Range& rows) {
        for (int x = 0; x < plane.cols; x += kMinimumColumns) {
          MinimumTile(plane, {x, std::min(x + kMinimumColumns, plane.cols)}, side).Write(rows, smallest);
        }
      },
      cv::getNumThreads() * kMinimumStripesPerThread);
  return smallest;
}

}  // namespace lumvik
