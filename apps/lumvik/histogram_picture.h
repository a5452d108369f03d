// A picture of histograms.
#ifndef LUMVIK_APPS_HISTOGRAM_PICTURE_H_
#define LUMVIK_APPS_HISTOGRAM_PICTURE_H_

#include <array>
#include <cstdint>

#include "lumvik.h"
#include "png_file.h"

namespace lumvik {

using Histogram = std::array<uint32_t, LUMVIK_HISTOGRAM_BINS>;

struct Histograms {
  Histogram red{};
  Histogram green{};
  Histogram blue{};
  Histogram luminance{};
};

// Red, green and blue as areas whose colors mix where they overlap, luminance as a line; black on the left.
// Heights are to one scale, linear up to the highest bin but those at the ends: clipped tones, often by far
// the most, are cut off at the top.
Pixels HistogramPicture(const Histograms& counts);

}  // namespace lumvik

#endif  // LUMVIK_APPS_HISTOGRAM_PICTURE_H_
