// Reference histograms.
#ifndef LUMVIK_TESTS_REFERENCE_HISTOGRAM_H_
#define LUMVIK_TESTS_REFERENCE_HISTOGRAM_H_

#include "analysis/histogram.h"

namespace lumvik::reference {

// Converts the whole image to floats first.
Histograms CountLevels(const ImageBuffer& image);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_HISTOGRAM_H_
