// Plain hue bands: shifts of hue, saturation and lightness around eight hues.
#ifndef LUMVIK_TESTS_REFERENCE_HSL_BANDS_H_
#define LUMVIK_TESTS_REFERENCE_HSL_BANDS_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

// How much band `band` (0..7) acts on a hue in turns: 1 at its center, falling to 0 at 0.09 turns.
float HslBandWeight(float hue, size_t band);

void HslBands(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_HSL_BANDS_H_
