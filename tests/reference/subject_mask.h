// Reference subject segmentation.
#ifndef LUMVIK_TESTS_REFERENCE_SUBJECT_MASK_H_
#define LUMVIK_TESTS_REFERENCE_SUBJECT_MASK_H_

#include "image/image_buffer.h"

namespace lumvik::reference {

// The input of GrabCut: CV_8UC3, BGR, at most 512 pixels on the long side.
cv::Mat SegmentationImage(const ImageBuffer& image);

// CV_8UC1 at the size of `image`. Exceptions of cv::grabCut propagate.
cv::Mat SubjectMask(const ImageBuffer& image, const cv::Rect& rectangle);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_SUBJECT_MASK_H_
