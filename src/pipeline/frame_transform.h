// Transforms that move pixels.
#ifndef LUMVIK_PIPELINE_FRAME_TRANSFORM_H_
#define LUMVIK_PIPELINE_FRAME_TRANSFORM_H_

#include <optional>

#include "pipeline/row_part.h"

namespace lumvik {

// A rectangle of an image: `pixels` (CV_16UC4 or CV_32FC4) begin at `origin`.
struct ImageTile {
  cv::Mat pixels;
  cv::Point origin;
};

// Both functions are called from several threads at once.
struct FrameTransform {
  // The rectangle of the image that a part is made of. For a single pixel it is largest at the corners of the
  // frame, or two pixels wide and high.
  std::function<cv::Rect(const RowPart&)> needs;
  // Fills in a part from a tile that covers that rectangle.
  std::function<void(const ImageTile&, const RowPart&)> read;
};

// An image in memory after a transform.
RowSource Transformed(const cv::Mat& image, const FrameTransform& transform);

// A transform whose input is read through a tile that moves down a strip with it. In most strips, `rows`
// rows at a time are enough.
struct StreamedFrame {
  FrameTransform transform;
  int rows = 0;
};

// Nothing if the tile would have to be too large, or to move up.
std::optional<StreamedFrame> Streamed(const FrameTransform& transform, cv::Size frame);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_FRAME_TRANSFORM_H_
