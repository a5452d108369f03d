// Sharpening: an unsharp mask on each color plane.
#ifndef LUMVIK_PIPELINE_STAGES_SHARPENING_H_
#define LUMVIK_PIPELINE_STAGES_SHARPENING_H_

#include "pipeline/area_transform.h"

namespace lumvik {

// Adds the difference between a plane and its blur where that exceeds the threshold; clamped to 0..1.
// `amount`: 150 adds all of it; NaN or infinity blackens every color without detail. `radius`: sigma of the
// blur in pixels; throws cv::Exception unless positive. `threshold`: in 16-bit codes.
AreaTransform Sharpening(float amount, float radius, float threshold);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_SHARPENING_H_
