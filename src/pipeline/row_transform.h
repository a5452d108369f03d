// Building blocks of row transforms: vectorized loops over a part.
#ifndef LUMVIK_PIPELINE_ROW_TRANSFORM_H_
#define LUMVIK_PIPELINE_ROW_TRANSFORM_H_

#include <cstddef>
#include <cstdint>

#include "base/vectorized.h"
#include "pipeline/row_part.h"

namespace lumvik {

// Calls `change(part, values...)`, a plain loop over the columns, with the widest vectors. A loop without
// branches runs several times as fast.
template <typename Change, typename... Values>
void ChangePart(const Change& change, const RowPart& part, Values... values) {
  Vectorized([&change, &part, values...] {
    // Copies that nothing else points to, so that the compiler knows that no store changes them.
    const RowPart own_part = part;
    const Change own_change = change;  // NOLINT(performance-unnecessary-copy-initialization)
    own_change(own_part, values...);
  });
}

// The part's first pixel in `image`, whose pixels are made of `Sample`s. The pixels are shared, not const.
template <typename Sample>
Sample* PixelsOf(const cv::Mat& image, const RowPart& part) {
  return reinterpret_cast<Sample*>(image.data + image.step * static_cast<size_t>(part.y) +
                                   image.elemSize() * static_cast<size_t>(part.x));
}

// Prefetches the pixels of the next row: rows are visited a strip of columns at a time, and the hardware
// prefetcher does not cross pages. GCC drops calls to a function that only prefetches unless it is inlined
// early.
[[gnu::always_inline]] inline void PrefetchNextRow(const cv::Mat& image, const RowPart& part) {
  constexpr size_t kCacheLine = 64;
  if (part.next_y < 0 || part.next_y >= image.rows) return;
  const uint8_t* next = image.ptr(part.next_y) + static_cast<size_t>(part.x) * image.elemSize();
  const size_t bytes = static_cast<size_t>(part.columns) * image.elemSize();
  for (size_t at = 0; at < bytes; at += kCacheLine) __builtin_prefetch(next + at);
}

// The transform that calls `change(part, values...)` as ChangePart does. `values` are those of each of the
// `planes` (cv::Mat of type CV_32FC1, as large as the frame) at the part's pixels.
template <typename Change, typename... Planes>
RowTransform MakeRowTransform(const Change& change, const Planes&... planes) {
  return {[change, planes...](const RowPart& part) {
    (PrefetchNextRow(planes, part), ...);
    ChangePart(change, part, static_cast<const float*>(PixelsOf<float>(planes, part))...);
  }};
}

// The transform of each color value to `function(value)`.
template <typename Function>
RowTransform EachValue(const Function& function) {
  return MakeRowTransform([function](const RowPart& part) {
    for (float* values : {part.red, part.green, part.blue}) {
      for (int i = 0; i < part.columns; ++i) values[i] = function(values[i]);
    }
  });
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_ROW_TRANSFORM_H_
