// Highlights and shadows: luminance of bright and dark tones, color ratios kept.
#ifndef LUMVIK_PIPELINE_STAGES_HIGHLIGHTS_SHADOWS_H_
#define LUMVIK_PIPELINE_STAGES_HIGHLIGHTS_SHADOWS_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// `shadows` lifts (positive) or darkens luminances below 0.55 by a power, `highlights` brightens or darkens
// those above 0.45 by a gain, both in percent. A changed pixel is scaled as a whole and clamped to 0..1.
RowTransform HighlightsShadows(float highlights, float shadows);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_HIGHLIGHTS_SHADOWS_H_
