// Cuts out the subject.
#ifndef LUMVIK_SEGMENTATION_SUBJECT_CUTOUT_H_
#define LUMVIK_SEGMENTATION_SUBJECT_CUTOUT_H_

#include "image/image_buffer.h"

namespace lumvik {

// The rendered image with the mask (CV_8UC1) as alpha: CV_8UC4 in BGRA order, as encoders take it. Throws
// cv::Exception if the sizes differ.
cv::Mat SubjectCutout(const ImageBuffer& rendered, const cv::Mat& mask);

}  // namespace lumvik

#endif  // LUMVIK_SEGMENTATION_SUBJECT_CUTOUT_H_
