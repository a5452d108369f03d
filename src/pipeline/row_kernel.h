// Point stages: each output pixel depends on its own input pixel alone.
#ifndef LUMVIK_PIPELINE_ROW_KERNEL_H_
#define LUMVIK_PIPELINE_ROW_KERNEL_H_

#include <functional>
#include <opencv2/core.hpp>
#include <vector>

#include "image/vectorized.h"

namespace lumvik {

// So many pixels of a row are worked on at a time: their floats stay in the first cache.
inline constexpr int kMaxPart = 1024;

// A part of one row of the working image: 1 to kMaxPart `columns`, a value each for every colour, 0..1 for
// black to full scale. Alpha takes no part.
struct PixelRow {
  float* __restrict red;
  float* __restrict green;
  float* __restrict blue;
  int columns;
  int x;  // of the first column in the frame
  int y;
};

// A point stage made ready for one run: it holds its constants and changes a row in place. Called from
// several threads at once. An empty kernel leaves every pixel as it is.
using RowKernel = std::function<void(const PixelRow&)>;

// The kernel that calls `change(row, values...)`, a plain loop over the columns, with the widest vectors;
// `values` are those of each of the `planes` (CV_32FC1, as large as the frame) at the row's pixels. Without
// branches in the loop it runs several times as fast.
template <typename Change, typename... Planes>
RowKernel MakeRowKernel(const Change& change, const Planes&... planes) {
  return [change, planes...](const PixelRow& row) {
    Vectorized([&] {
      // Copies that nothing else points to: the compiler then knows that storing a value changes none of
      // them.
      const PixelRow part = row;
      const Change own_change = change;  // NOLINT(performance-unnecessary-copy-initialization)
      own_change(part, (planes.template ptr<float>(row.y) + row.x)...);
    });
  };
}

// The kernel that gives each colour value of a pixel `function(value)`.
template <typename Function>
RowKernel EachValue(const Function& function) {
  return MakeRowKernel([function](const PixelRow& row) {
    for (float* values : {row.red, row.green, row.blue}) {
      for (int i = 0; i < row.columns; ++i) values[i] = function(values[i]);
    }
  });
}

// Passes every row of `input` through the kernels, in their order, into `output`. Each of the two is a
// 16-bit (CV_16UC4) or a working (CV_32FC4, source / 65535) image; they may be the same matrix. Rows are
// shared out over OpenCV's worker threads, and a part of a row stays in the cache from the first kernel to
// the last. 16-bit output is rounded to nearest and clamped to 0..65535; a NaN gives 0. Alpha is carried
// through.
void RunRowKernels(const cv::Mat& input, const std::vector<RowKernel>& kernels, cv::Mat& output);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_ROW_KERNEL_H_
