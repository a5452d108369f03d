// Lens corrections that move pixels: distortion and lateral chromatic aberration.
#ifndef LUMVIK_PIPELINE_STAGES_LENS_GEOMETRY_H_
#define LUMVIK_PIPELINE_STAGES_LENS_GEOMETRY_H_

#include "pipeline/packed_rows.h"

namespace lumvik {

// Both read from `working` (CV_32FC4) while their own rows are read.

// Radial distortion, -100..100 percent: positive samples from nearer the center towards the corners (corrects
// barrel distortion). Beyond the edge the picture is mirrored.
RowSource CorrectDistortion(const cv::Mat& working, float amount);

// Enlarges red and shrinks blue about the center by up to 0.3 % at 100 percent. Blue is padded with 0 at the
// edges.
RowSource CorrectChromaticAberration(const cv::Mat& working, float amount);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_LENS_GEOMETRY_H_
