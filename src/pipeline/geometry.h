// Geometry: flips, rotation, perspective and crop.
#ifndef LUMVIK_PIPELINE_GEOMETRY_H_
#define LUMVIK_PIPELINE_GEOMETRY_H_

#include "api/adjustments.h"
#include "pipeline/row_image.h"

namespace lumvik {

// In that order. All but the crop keep the frame's size and fill from outside with mirrored picture; a crop
// that would leave fewer than 11 pixels in a direction, or that covers 99 % of the frame from its origin, is
// not made. The result reads from `working` (CV_32FC4) while its own rows are read; flips are made in place.
RowImage Geometry(cv::Mat& working, const Adjustments& adjustments);

// The part of a frame that a crop keeps; the whole frame when it is not made.
cv::Rect CropArea(const CropRectangle& crop, cv::Size frame);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_GEOMETRY_H_
