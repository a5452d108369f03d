// Transforms that see each pixel next to a Gaussian blur of its surroundings.
#ifndef LUMVIK_PIPELINE_AREA_TRANSFORM_H_
#define LUMVIK_PIPELINE_AREA_TRANSFORM_H_

#include <functional>

#include "pipeline/gaussian.h"
#include "pipeline/row_transform.h"

namespace lumvik {

// `change(part, blurred)` changes a part in place; `blurred` holds the blurred luminance alone, or red, green
// and blue, at its pixels, as they were before the transform.
struct AreaTransform {
  enum class Input { kLuminance, kColors };

  Gaussian blur;
  Input input;
  std::function<void(const RowPart& part, const float* const* blurred)> change;
};

// The transform that calls `change(part, luminance)` as ChangePart does.
template <typename Change>
AreaTransform NextToBlurredLuminance(const Gaussian& blur, const Change& change) {
  return {blur, AreaTransform::Input::kLuminance, [change](const RowPart& part, const float* const* blurred) {
            ChangePart(change, part, blurred[0]);
          }};
}

// The same with `change(part, red, green, blue)`.
template <typename Change>
AreaTransform NextToBlurredColors(const Gaussian& blur, const Change& change) {
  return {blur, AreaTransform::Input::kColors, [change](const RowPart& part, const float* const* blurred) {
            ChangePart(change, part, blurred[0], blurred[1], blurred[2]);
          }};
}

// Stores the whole image as it is before a transform: a matrix of `type` filled through `sink(matrix)`.
using StoreRows = std::function<cv::Mat(int type, RowSink (*sink)(const cv::Mat&))>;

// The transform of a wide blur (Gaussian::IsWide), whose kernel spans more rows than a stream should hold: it
// reads the blur of the stored image.
RowTransform WideAreaTransform(const AreaTransform& area, const StoreRows& store);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_AREA_TRANSFORM_H_
