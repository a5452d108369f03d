// Suggests an exposure.
#ifndef LUMVIK_ANALYSIS_AUTO_EXPOSURE_H_
#define LUMVIK_ANALYSIS_AUTO_EXPOSURE_H_

#include "analysis/histogram.h"

namespace lumvik {

// In stops, -0.25..1: about a third of the shift that would bring the median to a level of 0.45.
// NOLINTNEXTLINE(readability-identifier-naming): the measurements are named as the exported tools are
float exposure_from_histogram(const Histogram& luminance);

// The same for an image (CV_16UC4, not empty), measured on a copy of 256 x 256 pixels.
float AutoExposure(const ImageBuffer& image);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_AUTO_EXPOSURE_H_
