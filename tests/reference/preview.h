// Reference preview with a blurred background, on float copies of the whole image.
#ifndef LUMVIK_TESTS_REFERENCE_PREVIEW_H_
#define LUMVIK_TESTS_REFERENCE_PREVIEW_H_

#include "image/image_buffer.h"

namespace lumvik::reference {

// CV_8UC4. An empty mask disables the blur.
cv::Mat RenderPreview(const ImageBuffer& rendered, const cv::Mat& mask, float bg_blur);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_PREVIEW_H_
