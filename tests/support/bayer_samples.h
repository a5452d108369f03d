// What the sensor of a described RAW file records.
#ifndef LUMVIK_TESTS_SUPPORT_BAYER_SAMPLES_H_
#define LUMVIK_TESTS_SUPPORT_BAYER_SAMPLES_H_

#include <opencv2/core.hpp>

#include "support/bayer_file.h"

namespace lumvik::test {

// CV_16UC1, margins included.
cv::Mat BayerSamples(const BayerFile& file);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_BAYER_SAMPLES_H_
