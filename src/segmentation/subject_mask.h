// Where in a photograph its subject is.
#ifndef LUMVIK_SEGMENTATION_SUBJECT_MASK_H_
#define LUMVIK_SEGMENTATION_SUBJECT_MASK_H_

#include "image/image_buffer.h"

namespace lumvik {

// The rectangle in which the subject is sought, in pixels of an image of that size: 60 % of each side about a
// point given in fractions of width and height, a negative or NaN fraction standing for the middle. It keeps
// off the borders by a pixel and is not moved back inside: near the right or bottom border it shrinks, past
// it it is empty or negative.
cv::Rect SubjectRectangle(cv::Size image, float subject_x, float subject_y);

// Segments the image (CV_16UC4) by GrabCut (Rother, Kolmogorov, Blake 2004) within that rectangle and gives
// the mask, CV_8UC1 at the image's size: 255 subject, 0 background, the outline softened. False, with
// `mask` as it was, when GrabCut fails. Its first color models are drawn from cv::theRNG().
bool SegmentSubject(const ImageBuffer& image, float subject_x, float subject_y, cv::Mat& mask);

}  // namespace lumvik

#endif  // LUMVIK_SEGMENTATION_SUBJECT_MASK_H_
