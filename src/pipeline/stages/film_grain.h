// Film grain: monochrome noise added to all three colors.
#ifndef LUMVIK_PIPELINE_STAGES_FILM_GRAIN_H_
#define LUMVIK_PIPELINE_STAGES_FILM_GRAIN_H_

#include <future>

#include "pipeline/row_transform.h"

namespace lumvik {

// Noise (CV_32FC1), and the state of the generator after drawing it.
struct GrainNoise {
  cv::Mat values;
  cv::RNG generator;
};

// Normal noise of standard deviation 0.05 at an `amount` of 100 percent, drawn from the current state of the
// calling thread's OpenCV generator, so that two renders differ. A generator draws in sequence: start early,
// on a separate thread. If OpenCV is limited to one thread, the noise is drawn when the result is
// requested.
std::future<GrainNoise> DrawGrain(cv::Size frame, float amount);

// The noise smoothed to `size` (percent) at constant strength, added and clamped to 0..1. Hands the generator
// back to the calling thread.
RowTransform FilmGrain(const GrainNoise& drawn, float amount, float size);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_FILM_GRAIN_H_
