// The small copies that the automatic tools work on.
#ifndef LUMVIK_ANALYSIS_REDUCED_COPY_H_
#define LUMVIK_ANALYSIS_REDUCED_COPY_H_

#include "image/image_buffer.h"

namespace lumvik {

// Resizes `image` (not empty) to `width` columns, keeping its proportions. The height is truncated to whole
// pixels and clamped to 1..32768; without that limit, an image of 1 x 4096 pixels would take 25 GB.
ImageBuffer ReducedCopy(const ImageBuffer& image, int width);

// The luminance (CV_32FC1) of a CV_32FC4 image, in OpenCV's matrix arithmetic. Luminance() differs in the
// last bit, which spectral_saliency() amplifies into structure where the spectrum should be zero.
cv::Mat WeightedLuminance(const cv::Mat& rgba);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_REDUCED_COPY_H_
