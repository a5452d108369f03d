// Images made by sampling another one between its pixels.
#ifndef LUMVIK_PIPELINE_BILINEAR_SAMPLER_H_
#define LUMVIK_PIPELINE_BILINEAR_SAMPLER_H_

#include <functional>

#include "pipeline/row_image.h"

namespace lumvik {

// Places in an image, in 1/32 of a pixel: as fine as OpenCV's geometric transforms place them.
inline constexpr int kPlacesPerPixel = 32;

// The places at which a part of a row is sampled, for each of its columns.
struct Places {
  int x[kMaxPart];
  int y[kMaxPart];
};

// Fills in the places for the pixels of a part.
using PlaceRow = std::function<void(const PixelRow& part, Places& places)>;

// `working` (CV_32FC4, at most 32767 pixels wide and high) sampled as cv::remap with cv::INTER_LINEAR does
// it: beyond the edge it is mirrored with its pixel (cv::BORDER_REFLECT).
RowImage Sampled(const cv::Mat& working, const PlaceRow& place_row);

// The place nearest to a coordinate that is given in 1/32 pixels already, ties to even. What lies farther out
// than any image counts as lying there, a NaN as lying far to the left or above.
template <typename Real>
int NearestPlace(Real scaled) {
  constexpr auto kFarthest = Real{32768 * kPlacesPerPixel};
  // Adding it leaves no bits for a fraction: 1.5 * 2^23 or 1.5 * 2^52.
  constexpr auto kRoundingShift = sizeof(Real) == sizeof(float) ? Real{12582912} : Real{6755399441055744};
  const Real above = scaled > -kFarthest ? scaled : -kFarthest;
  const Real within = above < kFarthest - 1 ? above : kFarthest - 1;
  return static_cast<int>((within + kRoundingShift) - kRoundingShift);
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_BILINEAR_SAMPLER_H_
