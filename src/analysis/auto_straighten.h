// How far a photograph leans.
#ifndef LUMVIK_ANALYSIS_AUTO_STRAIGHTEN_H_
#define LUMVIK_ANALYSIS_AUTO_STRAIGHTEN_H_

#include <vector>

#include "image/image_buffer.h"

namespace lumvik {

// Of segments x1, y1, x2, y2 in pixels: the mean angle to the horizontal of those within 30 degrees of it,
// each weighted by its length. Degrees, positive where they rise to the right; 0 when there are none.
float LeanOf(const std::vector<cv::Vec4i>& segments);

// Of the lines found in a copy of the image (CV_16UC4, not empty) of 800 columns.
float AutoStraighten(const ImageBuffer& image);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_AUTO_STRAIGHTEN_H_
