// Plain film grain: one Gaussian noise field, added to all three channels.
#ifndef LUMVIK_TESTS_REFERENCE_FILM_GRAIN_H_
#define LUMVIK_TESTS_REFERENCE_FILM_GRAIN_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

// Draws from OpenCV's default generator (cv::theRNG) as it stands.
void FilmGrain(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_FILM_GRAIN_H_
