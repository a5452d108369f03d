// HSL bands: hue, saturation and lightness of eight hue ranges.
#ifndef LUMVIK_PIPELINE_STAGES_HSL_BANDS_H_
#define LUMVIK_PIPELINE_STAGES_HSL_BANDS_H_

#include <array>

#include "base/adjustments.h"
#include "pipeline/row_transform.h"

namespace lumvik {

bool HasShift(const std::array<HslBand, kHslBandCount>& bands);

// Each band shifts pixels whose hue lies within 0.09 turns of its center, weighted by nearness; where bands
// overlap, their shifts add up. Grays stay.
RowTransform HslBands(const std::array<HslBand, kHslBandCount>& bands);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_HSL_BANDS_H_
