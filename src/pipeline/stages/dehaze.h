// Dehaze: the inverted haze model, with the transmission estimated from the dark channel.
#ifndef LUMVIK_PIPELINE_STAGES_DEHAZE_H_
#define LUMVIK_PIPELINE_STAGES_DEHAZE_H_

#include "pipeline/area_transform.h"

namespace lumvik {

// `amount` in percent, above 0. Stores the minimum color of each pixel. Result in 0..1. Transmissions not
// above 0.1 count as 0, so that such pixels end black or white, depending on their side of the airlight. He,
// Sun and Tang, Single Image Haze Removal Using Dark Channel Prior, 2009.
RowTransform Dehaze(float amount, const StoreRows& store);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_DEHAZE_H_
