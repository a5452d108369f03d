// Reference geometry: flips, rotation, perspective, crop.
#ifndef LUMVIK_TESTS_REFERENCE_GEOMETRY_H_
#define LUMVIK_TESTS_REFERENCE_GEOMETRY_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

void Geometry(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_GEOMETRY_H_
