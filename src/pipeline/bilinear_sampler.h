// Images made by sampling another one between its pixels.
#ifndef LUMVIK_PIPELINE_BILINEAR_SAMPLER_H_
#define LUMVIK_PIPELINE_BILINEAR_SAMPLER_H_

#include <functional>

#include "base/rounding.h"
#include "pipeline/row_part.h"

namespace lumvik {

// SamplePositions in an image, in 1/32 of a pixel: as fine as OpenCV's geometric transforms place them.
inline constexpr int kPositionsPerPixel = 32;

// The positions at which a part of a row is sampled, for each of its columns.
struct SamplePositions {
  int x[kMaxPart];
  int y[kMaxPart];
};

// Fills in the positions for the pixels of a part.
using LocatePart = std::function<void(const RowPart& part, SamplePositions& positions)>;

// `working` (CV_32FC4, at most 32767 pixels wide and high) sampled as cv::remap with cv::INTER_LINEAR does
// it: beyond the edge it is mirrored with its pixel (cv::BORDER_REFLECT).
RowSource Sampled(const cv::Mat& working, const LocatePart& locate);

// The position nearest to a coordinate already in 1/32 pixels, ties to even. What lies further out than any
// image counts as just outside the largest, NaN as far left or above.
template <typename Real>
int NearestPosition(Real scaled) {
  constexpr auto kFarthest = Real{32768 * kPositionsPerPixel};
  const Real above = scaled > -kFarthest ? scaled : -kFarthest;
  return static_cast<int>(RoundToNearest(above < kFarthest - 1 ? above : kFarthest - 1));
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_BILINEAR_SAMPLER_H_
