// Clarity and texture: local contrast at a large and at a small radius.
#ifndef LUMVIK_PIPELINE_STAGES_CLARITY_TEXTURE_H_
#define LUMVIK_PIPELINE_STAGES_CLARITY_TEXTURE_H_

#include "pipeline/row_steps.h"

namespace lumvik {

// Adds to each color the difference between the luminance and its blur (sigma 20 pixels for clarity, 3 for
// texture), both in percent and both of the luminance before the stage; clamped to 0..1 after each. Stores
// the image only for clarity.
RowStep ClarityTexture(float clarity, float texture, const StoreRows& store);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_CLARITY_TEXTURE_H_
