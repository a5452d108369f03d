// Lens corrections that move pixels: distortion and lateral chromatic aberration.
#ifndef LUMVIK_PIPELINE_STAGES_LENS_GEOMETRY_H_
#define LUMVIK_PIPELINE_STAGES_LENS_GEOMETRY_H_

#include "pipeline/packed_rows.h"

namespace lumvik {

// Both refer to `image` (CV_16UC4 or CV_32FC4), which they sample while their rows are read.

// Radial distortion, -100..100 percent: positive values sample closer to the center toward the corners, which
// corrects barrel distortion. The image is mirrored at its edges.
RowSource CorrectDistortion(const cv::Mat& image, float amount);

// Enlarges red and shrinks blue about the center by up to 0.3 % at 100 percent. Blue is padded with 0.
RowSource CorrectChromaticAberration(const cv::Mat& image, float amount);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_LENS_GEOMETRY_H_
