// Geometry: flips, rotation, perspective and crop.
#ifndef LUMVIK_PIPELINE_STAGES_GEOMETRY_H_
#define LUMVIK_PIPELINE_STAGES_GEOMETRY_H_

#include "base/adjustments.h"
#include "pipeline/packed_rows.h"

namespace lumvik {

// In that order. All but the crop keep the frame's size and fill from outside with mirrored picture. Rotation
// and perspective read from `working` (CV_32FC4) while their own rows are read.

// In place.
RowSource Flipped(cv::Mat& working, bool horizontally, bool vertically);

// Counter-clockwise about the center.
RowSource Rotated(const cv::Mat& working, float degrees);

// -100..100 percent: `horizontal` narrows the top and widens the bottom, `vertical` brings both edges in; one
// transform for both.
RowSource PerspectiveCorrected(const cv::Mat& working, float horizontal, float vertical);

// The part of a frame that a crop keeps. A crop that would leave fewer than 11 pixels in a direction, or that
// covers 99 % of the frame from its origin, is not made: the whole frame.
cv::Rect CropArea(const CropRectangle& crop, cv::Size frame);

RowSource Cropped(const RowSource& image, const cv::Rect& area);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_GEOMETRY_H_
