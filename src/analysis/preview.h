// What the host puts on screen.
#ifndef LUMVIK_ANALYSIS_PREVIEW_H_
#define LUMVIK_ANALYSIS_PREVIEW_H_

#include "image/image_buffer.h"

namespace lumvik {

// The side in pixels of the Gaussian kernel for a background blur in percent: odd, 3..61.
int BackgroundBlurKernelSize(float bg_blur);

// Writes `rendered` as 8-bit RGBA into `preview`, which keeps its memory when it is CV_8UC4 of that size.
// With `bg_blur` above 0 percent and a mask (CV_8UC1: 255 subject, 0 background; stretched to the picture),
// what lies outside the subject is blurred, alpha included; an empty mask blurs nothing.
void RenderPreview(const ImageBuffer& rendered, const cv::Mat& mask, float bg_blur, cv::Mat& preview);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_PREVIEW_H_
