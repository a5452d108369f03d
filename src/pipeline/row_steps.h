// A run over the rows of an image: each row passes through several steps while it is in the cache.
#ifndef LUMVIK_PIPELINE_ROW_STEPS_H_
#define LUMVIK_PIPELINE_ROW_STEPS_H_

#include <functional>
#include <utility>
#include <variant>
#include <vector>

#include "pipeline/gaussian_blur.h"
#include "pipeline/row_image.h"

namespace lumvik {

// A stage that sees each pixel beside the blur of its surroundings: `change(row, blurred)` changes a part of
// a row in place; `blurred` has the values of the luminance alone, or of red, green and blue, at its pixels,
// as they were before the stage.
struct AreaKernel {
  enum class Of { kLuminance, kColors };

  SymmetricKernel window;
  Of of;
  std::function<void(const PixelRow& row, const float* const* blurred)> change;
};

// The stage that calls `change(row, luminance)`, a plain loop over the columns, with the widest vectors.
template <typename Change>
AreaKernel BesideBlurredLuminance(SymmetricKernel window, const Change& change) {
  return {std::move(window), AreaKernel::Of::kLuminance,
          [change](const PixelRow& row, const float* const* blurred) { ChangeRow(change, row, blurred[0]); }};
}

// The same with `change(row, red, green, blue)`.
template <typename Change>
AreaKernel BesideBlurredColors(SymmetricKernel window, const Change& change) {
  return {std::move(window), AreaKernel::Of::kColors,
          [change](const PixelRow& row, const float* const* blurred) {
            ChangeRow(change, row, blurred[0], blurred[1], blurred[2]);
          }};
}

using RowStep = std::variant<RowKernel, AreaKernel>;
using RowSteps = std::vector<RowStep>;

// Passes every row of `image` through the steps, in their order, and to `store`, shared out over OpenCV's
// worker threads. Whatever can fail does so before the first row is stored: when there is no memory for
// tasks, the calling thread does every row.
void RunRowSteps(const RowImage& image, const RowSteps& steps, const RowKernel& store);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_ROW_STEPS_H_
