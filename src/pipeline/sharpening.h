// Sharpening: an unsharp mask on each colour plane.
#ifndef LUMVIK_PIPELINE_SHARPENING_H_
#define LUMVIK_PIPELINE_SHARPENING_H_

#include "pipeline/row_kernel.h"

namespace lumvik {

// Adds what a plane holds beyond its blur, where that exceeds the threshold; clamped to 0..1. `amount`: 150
// adds it whole. `radius`: the blur's sigma in pixels; OpenCV throws when it is not positive. `threshold`: in
// 16-bit codes. `image` is the one that the kernel will change.
RowKernel Sharpening(const ColorPlanes& image, float amount, float radius, float threshold);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_SHARPENING_H_
