// Plain counting of levels.
#ifndef LUMVIK_TESTS_REFERENCE_HISTOGRAM_H_
#define LUMVIK_TESTS_REFERENCE_HISTOGRAM_H_

#include "analysis/histogram.h"

namespace lumvik::reference {

// By way of a float copy of the whole image.
Histograms CountLevels(const ImageBuffer& image);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_HISTOGRAM_H_
