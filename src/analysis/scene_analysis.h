// Suggests a complete set of adjustments.
#ifndef LUMVIK_ANALYSIS_SCENE_ANALYSIS_H_
#define LUMVIK_ANALYSIS_SCENE_ANALYSIS_H_

#include <array>

#include "image/image_buffer.h"
#include "lumvik.h"

namespace lumvik {

// One value for each of the first adjustments, in their order. For the ranges see lumvik_auto_enhance().
using Suggestions = std::array<float, LUMVIK_ENHANCE_SLOTS>;

// The slots in use; all others are 0.
enum SuggestionSlot {
  kExposureSlot = 0,
  kContrastSlot = 2,
  kHighlightsSlot = 3,
  kShadowsSlot = 4,
  kBlacksSlot = 6,
  kTemperatureSlot = 7,
  kTintSlot = 8,
  kSaturationSlot = 9,
  kVibranceSlot = 10,
  kSharpeningAmountSlot = 11,
  kNrLuminanceSlot = 14,
  kNrColorSlot = 15
};

// Measured on a copy of the image (CV_16UC4) 512 pixels wide; all 0 for an empty image.
// NOLINTNEXTLINE(readability-identifier-naming): the measurements are named as the exported tools are
Suggestions analyze_scene(const ImageBuffer& image);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_SCENE_ANALYSIS_H_
