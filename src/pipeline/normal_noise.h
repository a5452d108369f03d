// Normal noise with the values of OpenCV's generator.
#ifndef LUMVIK_PIPELINE_NORMAL_NOISE_H_
#define LUMVIK_PIPELINE_NORMAL_NOISE_H_

#include <opencv2/core.hpp>

namespace lumvik {

// What generator.fill(plane, cv::RNG::NORMAL, 0, deviation) does to `plane` (CV_32FC1) and to the generator,
// in two thirds of the time.
void FillWithNoise(cv::Mat& plane, double deviation, cv::RNG& generator);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_NORMAL_NOISE_H_
