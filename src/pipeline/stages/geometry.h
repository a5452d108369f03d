// Geometry: flips, rotation, perspective and crop.
#ifndef LUMVIK_PIPELINE_STAGES_GEOMETRY_H_
#define LUMVIK_PIPELINE_STAGES_GEOMETRY_H_

#include "base/adjustments.h"
#include "pipeline/frame_transform.h"

namespace lumvik {

// In this order. All but the crop keep the size of the frame and mirror the image at its edges.

FrameView Flip(cv::Size frame, bool horizontally, bool vertically);

// Counter-clockwise about the center.
FrameTransform Rotation(cv::Size frame, float degrees);

// -100..100 percent, in one transform: `horizontal` narrows the top and widens the bottom, `vertical` moves
// the top and bottom edges inward.
FrameTransform Perspective(cv::Size frame, float horizontal, float vertical);

// The part of a frame that a crop keeps: the whole frame if fewer than 11 pixels would remain in a direction,
// or if the crop covers 99 % of the frame from its origin.
cv::Rect CropArea(const CropRectangle& crop, cv::Size frame);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_GEOMETRY_H_
