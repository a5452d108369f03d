// Film grain: one colorless noise on all three colors.
#ifndef LUMVIK_PIPELINE_STAGES_FILM_GRAIN_H_
#define LUMVIK_PIPELINE_STAGES_FILM_GRAIN_H_

#include <future>

#include "pipeline/row_transform.h"

namespace lumvik {

// Noise (CV_32FC1), and its generator as it stood afterwards.
struct GrainNoise {
  cv::Mat values;
  cv::RNG generator;
};

// Normal noise of standard deviation 0.05 at an `amount` of 100 percent. Drawn from OpenCV's generator of the
// calling thread as it stands: two renders differ. A generator draws in sequence, so that only a thread
// beside those that develop makes it faster; to be begun early. Where OpenCV has one thread, so has this: it
// is then drawn when it is waited for.
std::future<GrainNoise> DrawGrain(cv::Size frame, float amount);

// That noise smoothed to `size` (percent) without losing strength, added and clamped to 0..1. Hands the
// generator back to the calling thread.
RowTransform FilmGrain(const GrainNoise& drawn, float amount, float size);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_FILM_GRAIN_H_
