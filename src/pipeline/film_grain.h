// Film grain: one colourless noise on all three colours.
#ifndef LUMVIK_PIPELINE_FILM_GRAIN_H_
#define LUMVIK_PIPELINE_FILM_GRAIN_H_

#include "pipeline/row_kernel.h"

namespace lumvik {

// Normal noise of standard deviation 0.05 at an `amount` of 100 percent, smoothed to `size` (percent) without
// losing strength, added and clamped to 0..1. Drawn from OpenCV's generator of the calling
// thread as it stands: two renders differ.
RowKernel FilmGrain(cv::Size frame, float amount, float size);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_FILM_GRAIN_H_
