// Renders the preview.
#ifndef LUMVIK_ANALYSIS_PREVIEW_H_
#define LUMVIK_ANALYSIS_PREVIEW_H_

#include "image/image_buffer.h"

namespace lumvik {

// The size in pixels of the Gaussian kernel for a background blur in percent: odd, 3..61.
int BackgroundBlurKernelSize(float bg_blur);

// Converts `rendered` to 8-bit RGBA in `preview`, which keeps its memory if it is a CV_8UC4 of the same size.
// With `bg_blur` above 0 percent and a mask (CV_8UC1: 255 subject, 0 background; resized to the image), the
// background is blurred, including its alpha. An empty mask disables the blur.
void RenderPreview(const ImageBuffer& rendered, const cv::Mat& mask, float bg_blur, cv::Mat& preview);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_PREVIEW_H_
