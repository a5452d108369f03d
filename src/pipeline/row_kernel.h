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

// The colours of a working image, a plane each (CV_32FC1). Its alpha stays where it was.
struct ColorPlanes {
  cv::Mat red;
  cv::Mat green;
  cv::Mat blue;

  cv::Size Size() const { return red.size(); }
  bool Empty() const { return red.empty(); }
};

// Pass every row of an image through the kernels, in their order, into another one of the same size. A packed
// image is a 16-bit (CV_16UC4) or a working (CV_32FC4, source / 65535) one; the two may be the same. Rows are
// shared out over OpenCV's worker threads, and a part of a row stays in the cache from the first kernel to
// the last. 16-bit output is rounded to nearest and clamped to 0..65535; a NaN gives 0. Alpha is carried
// through, that of planes from the packed image `alpha`. Between two different images nothing stops them:
// when there is no memory for tasks, the calling thread does every row.
using RowKernels = std::vector<RowKernel>;
void RunRowKernels(const cv::Mat& input, const RowKernels& kernels, cv::Mat& output);
void RunRowKernels(const cv::Mat& input, const RowKernels& kernels, ColorPlanes& output);
void RunRowKernels(const ColorPlanes& input, const cv::Mat& alpha, const RowKernels& kernels,
                   cv::Mat& output);
void RunRowKernels(ColorPlanes& in_place, const RowKernels& kernels);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_ROW_KERNEL_H_
