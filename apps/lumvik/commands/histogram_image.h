// An image of the histograms.
#ifndef LUMVIK_APPS_COMMANDS_HISTOGRAM_IMAGE_H_
#define LUMVIK_APPS_COMMANDS_HISTOGRAM_IMAGE_H_

#include <array>
#include <cstdint>

#include "develop/png_file.h"
#include "lumvik.h"

namespace lumvik {

using Histogram = std::array<uint32_t, LUMVIK_HISTOGRAM_BINS>;

struct Histograms {
  Histogram red{};
  Histogram green{};
  Histogram blue{};
  Histogram luminance{};
};

// Red, green and blue as areas that blend where they overlap, luminance as a line; black on the left. All
// share one linear scale up to the highest bin between the two ends, which hold clipped tones and are cut off
// at the top.
Pixels HistogramImage(const Histograms& counts);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_HISTOGRAM_IMAGE_H_
