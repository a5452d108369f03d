// Geometry: flips, rotation, perspective and crop.
#ifndef LUMVIK_PIPELINE_GEOMETRY_H_
#define LUMVIK_PIPELINE_GEOMETRY_H_

#include <opencv2/core.hpp>

#include "api/adjustments.h"

namespace lumvik {

// In that order. All but the crop keep the frame's size and fill from outside with mirrored picture; a crop
// that would leave fewer than 11 pixels in a direction, or that covers 99 % of the frame from its origin, is
// not made.
void Geometry(cv::Mat& working, const Adjustments& adjustments);

// The part of a frame that a crop keeps; the whole frame when it is not made.
cv::Rect CropArea(const CropRectangle& crop, cv::Size frame);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_GEOMETRY_H_
