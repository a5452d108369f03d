// Point stages: each output pixel depends on its own input pixel alone.
#ifndef LUMVIK_PIPELINE_ROW_KERNEL_H_
#define LUMVIK_PIPELINE_ROW_KERNEL_H_

#include <cstdint>
#include <functional>
#include <opencv2/core.hpp>

#include "base/vectorized.h"

namespace lumvik {

// So many pixels of a row are worked on at a time: their floats stay in the first cache.
inline constexpr int kMaxPart = 1024;

// A part of one row of the working image: 1 to kMaxPart `columns`, a value each for every channel, 0..1 for
// black to full scale. Alpha goes along with the colors; no stage changes it.
struct PixelRow {
  float* __restrict red;
  float* __restrict green;
  float* __restrict blue;
  float* __restrict alpha;
  int columns;
  int x;  // of the first column in the frame
  int y;
};

// Work on one part of a row, made ready for one run: it holds its constants. A point stage changes the pixels
// in place, a source fills them in, a sink stores them elsewhere. Called from several threads at once. An
// empty kernel leaves every pixel as it is.
using RowKernel = std::function<void(const PixelRow&)>;

// Calls `change(row, values...)`, a plain loop over the columns, with the widest vectors. Without branches in
// the loop it runs several times as fast.
template <typename Change, typename... Values>
void ChangeRow(const Change& change, const PixelRow& row, Values... values) {
  Vectorized([&change, &row, values...] {
    // Copies that nothing else points to: the compiler then knows that storing a value changes none of them.
    const PixelRow part = row;
    const Change own_change = change;  // NOLINT(performance-unnecessary-copy-initialization)
    own_change(part, values...);
  });
}

// Asks for the pixels below those of `row`: rows are passed through a strip of columns at a time, and to
// another page the processor does not look ahead by itself. GCC takes a function that does nothing else for
// one without effect, and drops its calls unless they are inlined at once.
[[gnu::always_inline]] inline void FetchNextRow(const cv::Mat& image, const PixelRow& row) {
  constexpr size_t kCacheLine = 64;
  if (row.y + 1 >= image.rows) return;
  const uint8_t* next = image.ptr(row.y + 1) + static_cast<size_t>(row.x) * image.elemSize();
  const size_t bytes = static_cast<size_t>(row.columns) * image.elemSize();
  for (size_t at = 0; at < bytes; at += kCacheLine) __builtin_prefetch(next + at);
}

// The kernel that does so. `values` are those of each of the `planes` (cv::Mat of type CV_32FC1, as large as
// the frame) at the row's pixels.
template <typename Change, typename... Planes>
RowKernel MakeRowKernel(const Change& change, const Planes&... planes) {
  return [change, planes...](const PixelRow& row) {
    (FetchNextRow(planes, row), ...);
    ChangeRow(change, row, (planes.template ptr<float>(row.y) + row.x)...);
  };
}

// The kernel that gives each color value of a pixel `function(value)`.
template <typename Function>
RowKernel EachValue(const Function& function) {
  return MakeRowKernel([function](const PixelRow& row) {
    for (float* values : {row.red, row.green, row.blue}) {
      for (int i = 0; i < row.columns; ++i) values[i] = function(values[i]);
    }
  });
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_ROW_KERNEL_H_
