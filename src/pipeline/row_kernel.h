// Point stages: each output pixel depends on its own input pixel alone.
#ifndef LUMVIK_PIPELINE_ROW_KERNEL_H_
#define LUMVIK_PIPELINE_ROW_KERNEL_H_

#include <functional>
#include <opencv2/core.hpp>
#include <vector>

namespace lumvik {

// One row of the working image: `columns` values a colour, 0..1 for black to full scale. Alpha takes no part.
struct PixelRow {
  float* red;
  float* green;
  float* blue;
  int columns;
  int y;  // of the row in the frame
};

// A point stage made ready for one run: it holds its constants and changes a row in place. Called from
// several threads at once. An empty kernel leaves every pixel as it is.
using RowKernel = std::function<void(const PixelRow&)>;

// The kernel that gives each colour value of a pixel `function(value)`.
template <typename Function>
RowKernel EachValue(const Function& function) {
  return [function](const PixelRow& row) {
    for (float* values : {row.red, row.green, row.blue}) {
      for (int x = 0; x < row.columns; ++x) values[x] = function(values[x]);
    }
  };
}

// Passes every row of `input` through the kernels, in their order, into `output`. Each of the two is a
// 16-bit (CV_16UC4) or a working (CV_32FC4, source / 65535) image; they may be the same matrix. Rows are
// shared out over OpenCV's worker threads, a row stays in the cache from the first kernel to the last.
// 16-bit output is rounded to nearest and clamped to 0..65535; a NaN gives 0. Alpha is carried through.
void RunRowKernels(const cv::Mat& input, const std::vector<RowKernel>& kernels, cv::Mat& output);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_ROW_KERNEL_H_
