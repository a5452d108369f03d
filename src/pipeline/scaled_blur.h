// A scaled plane, blurred with OpenCV's bytes.
#ifndef LUMVIK_PIPELINE_SCALED_BLUR_H_
#define LUMVIK_PIPELINE_SCALED_BLUR_H_

#include <opencv2/core.hpp>

namespace lumvik {

// value * factor + offset
struct LinearScale {
  double factor;
  double offset;
};

// What cv::Mat::convertTo with `scale` and then cv::GaussianBlur with `sigma`, borders mirrored
// (cv::BORDER_REFLECT_101), make of `plane` (CV_32FC1), to the last bit: for stages in which a threshold or a
// division follows. Overwrites `plane`, and `blurred`, which has its size and type. Works on all threads.
void ScaleAndBlur(cv::Mat& plane, const LinearScale& scale, double sigma, cv::Mat& blurred);

// Whether this takes half of OpenCV's time, as with AVX2: where OpenCV rounds each product and sum together.
// Otherwise it calls OpenCV.
bool CanBlurFused();

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_SCALED_BLUR_H_
