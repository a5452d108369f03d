// The small copies of a photograph on which the automatic tools measure.
#ifndef LUMVIK_ANALYSIS_REDUCED_COPY_H_
#define LUMVIK_ANALYSIS_REDUCED_COPY_H_

#include "image/image_buffer.h"

namespace lumvik {

// `image`, which is not empty, in its own proportions at `width` columns. The height is cut to whole pixels
// and lies between 1 and 32768: a picture one pixel wide and 4096 high would need 25 GB otherwise.
ImageBuffer ReducedCopy(const ImageBuffer& image, int width);

// The luminance (CV_32FC1) of a CV_32FC4 image in OpenCV's matrix arithmetic. Luminance() differs from it
// in the last bit, which spectral_saliency() takes for a structure where a spectrum should vanish.
cv::Mat WeightedLuminance(const cv::Mat& rgba);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_REDUCED_COPY_H_
