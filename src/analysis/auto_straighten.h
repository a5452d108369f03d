// Estimates the tilt of a photograph.
#ifndef LUMVIK_ANALYSIS_AUTO_STRAIGHTEN_H_
#define LUMVIK_ANALYSIS_AUTO_STRAIGHTEN_H_

#include <vector>

#include "image/image_buffer.h"

namespace lumvik {

// The mean angle of line segments (x1, y1, x2, y2 in pixels) to the horizontal, weighted by length. Segments
// steeper than 30 degrees or at most 20 pixels long are ignored. In degrees, positive if they rise to the
// right; 0 without segments.
float LeanOf(const std::vector<cv::Vec4i>& segments);

// The same for the lines found in a copy of the image (CV_16UC4, not empty) 800 pixels wide.
float AutoStraighten(const ImageBuffer& image);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_AUTO_STRAIGHTEN_H_
