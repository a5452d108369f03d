// Histograms of an image.
#ifndef LUMVIK_ANALYSIS_HISTOGRAM_H_
#define LUMVIK_ANALYSIS_HISTOGRAM_H_

#include <array>
#include <cstdint>

#include "image/image_buffer.h"

namespace lumvik {

inline constexpr int kHistogramBins = 256;

// Bin i counts the values that round to i / 255.
using Histogram = std::array<uint32_t, kHistogramBins>;

struct Histograms {
  Histogram red{};
  Histogram green{};
  Histogram blue{};
  Histogram luminance{};
};

// Counts every pixel of the image (CV_16UC4) once in each histogram; alpha is ignored.
Histograms CountLevels(const ImageBuffer& image);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_HISTOGRAM_H_
