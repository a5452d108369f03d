// The develop pipeline: source image and adjustments in, rendered image out.
#ifndef LUMVIK_PIPELINE_DEVELOP_PIPELINE_H_
#define LUMVIK_PIPELINE_DEVELOP_PIPELINE_H_

#include "base/adjustments.h"
#include "image/image_buffer.h"

namespace lumvik {

// Runs every active stage in the fixed order and replaces `rendered` by the result, which never shares pixels
// with `source`. An empty source and an exception from a stage leave `rendered` unchanged. The bytes do not
// depend on the number of threads.
void DevelopPipeline(const ImageBuffer& source, const Adjustments& adjustments, ImageBuffer& rendered);

// The same for a working image (CV_32FC4), and without rounding to 16 bits.
cv::Mat DevelopWorkingImage(const cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_DEVELOP_PIPELINE_H_
