// Lens corrections that move pixels: distortion and lateral chromatic aberration.
#ifndef LUMVIK_PIPELINE_STAGES_LENS_GEOMETRY_H_
#define LUMVIK_PIPELINE_STAGES_LENS_GEOMETRY_H_

#include "pipeline/frame_transform.h"

namespace lumvik {

// Radial distortion, -100..100 percent: positive values sample closer to the center toward the corners, which
// corrects barrel distortion. The image is mirrored at its edges.
FrameTransform DistortionCorrection(cv::Size frame, float amount);

// Enlarges red and shrinks blue about the center by up to 0.3 % at 100 percent. Blue is padded with 0.
FrameTransform AberrationCorrection(cv::Size frame, float amount);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_LENS_GEOMETRY_H_
