// Post-crop vignette: the edges of the frame blended toward white.
#ifndef LUMVIK_PIPELINE_STAGES_POST_CROP_VIGNETTE_H_
#define LUMVIK_PIPELINE_STAGES_POST_CROP_VIGNETTE_H_

#include "pipeline/row_transform.h"

namespace lumvik {

// The settings of the same names, in percent.
struct VignetteSettings {
  float amount;
  float midpoint;
  float roundness;
};

// Either sign of the amount brightens. The weight rises smoothly from the midpoint radius to the edge, where
// the radius is 1 in both directions; negative roundness turns the ellipse into a rectangle. Clamped to 0..1.
RowTransform PostCropVignette(const VignetteSettings& settings, cv::Size frame);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_POST_CROP_VIGNETTE_H_
