// Segments the subject of a photograph.
#ifndef LUMVIK_SEGMENTATION_SUBJECT_MASK_H_
#define LUMVIK_SEGMENTATION_SUBJECT_MASK_H_

#include "image/image_buffer.h"

namespace lumvik {

// The rectangle searched for the subject in an image of the given size: 60 % of each side, centered on a
// point given in fractions of width and height. A negative or NaN fraction means the center. The rectangle
// stays one pixel away from the borders. Near the right or bottom border it shrinks; beyond, it is empty or
// negative.
cv::Rect SubjectRectangle(cv::Size image, float subject_x, float subject_y);

// Segments the image (CV_16UC4) within that rectangle by GrabCut (C. Rother, V. Kolmogorov, A. Blake,
// SIGGRAPH 2004) into a mask of its size, CV_8UC1: 255 subject, 0 background, with a feathered outline.
// Returns false and keeps `mask` if GrabCut fails. GrabCut seeds its color models from cv::theRNG().
bool SegmentSubject(const ImageBuffer& image, float subject_x, float subject_y, cv::Mat& mask);

}  // namespace lumvik

#endif  // LUMVIK_SEGMENTATION_SUBJECT_MASK_H_
