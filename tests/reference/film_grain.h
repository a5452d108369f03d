// Reference film grain: one Gaussian noise plane, added to all three color channels.
#ifndef LUMVIK_TESTS_REFERENCE_FILM_GRAIN_H_
#define LUMVIK_TESTS_REFERENCE_FILM_GRAIN_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

// Draws from the current state of cv::theRNG().
void FilmGrain(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_FILM_GRAIN_H_
