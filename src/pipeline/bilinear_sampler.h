// Images sampled at fractional positions.
#ifndef LUMVIK_PIPELINE_BILINEAR_SAMPLER_H_
#define LUMVIK_PIPELINE_BILINEAR_SAMPLER_H_

#include <functional>

#include "base/rounding.h"
#include "pipeline/frame_transform.h"

namespace lumvik {

// Sample positions are in 1/32 of a pixel, the precision of OpenCV's geometric transforms.
inline constexpr int kPositionsPerPixel = 32;

// The position each column of a part is sampled at.
struct SamplePositions {
  int x[kMaxPart];
  int y[kMaxPart];
};

// Fills in the positions for a part.
using LocatePart = std::function<void(const RowPart& part, SamplePositions& positions)>;

// Samples an image, at most 32767 pixels wide and high, as cv::remap does with cv::INTER_LINEAR, mirrored at
// the edge with the outermost pixel repeated (cv::BORDER_REFLECT).
FrameTransform BilinearSampling(cv::Size frame, const LocatePart& locate);

// The position nearest to a coordinate already in 1/32 pixels, ties to even. Anything further out than the
// largest image is moved just outside it, NaN to the far left or top.
template <typename Real>
int NearestPosition(Real scaled) {
  constexpr auto kFarthest = Real{32768 * kPositionsPerPixel};
  const Real above = scaled > -kFarthest ? scaled : -kFarthest;
  return static_cast<int>(RoundToNearest(above < kFarthest - 1 ? above : kFarthest - 1));
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_BILINEAR_SAMPLER_H_
