// Sharpening: an unsharp mask on each color plane.
#ifndef LUMVIK_PIPELINE_STAGES_SHARPENING_H_
#define LUMVIK_PIPELINE_STAGES_SHARPENING_H_

#include "pipeline/row_steps.h"

namespace lumvik {

// Adds what a plane holds beyond its blur, where that exceeds the threshold; clamped to 0..1. `amount`: 150
// adds it whole. `radius`: the blur's sigma in pixels; throws when it is not positive. `threshold`: in
// 16-bit codes.
AreaKernel Sharpening(float amount, float radius, float threshold);

// The same for a radius from WideGaussian::kMinSigma on. `working` (CV_32FC4) is the image that the step will
// change.
RowStep WideSharpening(const cv::Mat& working, float amount, float radius, float threshold);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_SHARPENING_H_
