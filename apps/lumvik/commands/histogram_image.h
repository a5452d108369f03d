// An image of the histograms.
#ifndef LUMVIK_APPS_COMMANDS_HISTOGRAM_IMAGE_H_
#define LUMVIK_APPS_COMMANDS_HISTOGRAM_IMAGE_H_

#include "lumvik_host.hpp"

namespace lumvik {

// Red, green and blue as areas that blend where they overlap, luminance as a line; black on the left. All
// share one linear scale up to the highest bin between the two ends, which hold clipped tones and are cut off
// at the top.
api::Image HistogramImage(const api::Histogram& counts);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_HISTOGRAM_IMAGE_H_
