// The subject alone.
#ifndef LUMVIK_SEGMENTATION_SUBJECT_CUTOUT_H_
#define LUMVIK_SEGMENTATION_SUBJECT_CUTOUT_H_

#include "image/image_buffer.h"

namespace lumvik {

// The rendered image with the mask (CV_8UC1) as its alpha, CV_8UC4 in the encoders' channel order, blue
// first. Throws cv::Exception when the two differ in size.
cv::Mat SubjectCutout(const ImageBuffer& rendered, const cv::Mat& mask);

}  // namespace lumvik

#endif  // LUMVIK_SEGMENTATION_SUBJECT_CUTOUT_H_
