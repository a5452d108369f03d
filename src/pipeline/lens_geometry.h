// Lens corrections that move pixels: distortion and lateral chromatic aberration.
#ifndef LUMVIK_PIPELINE_LENS_GEOMETRY_H_
#define LUMVIK_PIPELINE_LENS_GEOMETRY_H_

#include <opencv2/core.hpp>

namespace lumvik {

// Radial distortion, -100..100 percent: positive samples from nearer the centre towards the corners (corrects
// barrel distortion). Beyond the edge the picture is mirrored.
void CorrectDistortion(cv::Mat& working, float amount);

// Enlarges red and shrinks blue about the centre by up to 0.3 % at 100 percent; acts above 0 only. Blue is
// padded with 0 at the edges.
void CorrectChromaticAberration(cv::Mat& working, float amount);

// `plane` brought to `size`, centred: cut when it is at least as large in both directions, else padded with
// 0.
cv::Mat FitToSize(const cv::Mat& plane, cv::Size size);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_LENS_GEOMETRY_H_
