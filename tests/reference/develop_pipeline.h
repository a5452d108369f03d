// The reference pipeline, single-threaded and literal, which the engine is tested against.
#ifndef LUMVIK_TESTS_REFERENCE_DEVELOP_PIPELINE_H_
#define LUMVIK_TESTS_REFERENCE_DEVELOP_PIPELINE_H_

#include "base/adjustments.h"
#include "image/image_buffer.h"

namespace lumvik::reference {

// CV_32FC4 of a CV_16UC4 image: source / 65535.
cv::Mat ToWorkingImage(const ImageBuffer& source);

// CV_16UC4 of a working image, rounded and clamped.
ImageBuffer FromWorkingImage(const cv::Mat& working);

// Too small for separate files. 0 is not the identity; DevelopWorkingImage() skips it.
void Brightness(cv::Mat& working, float brightness);
void Contrast(cv::Mat& working, float contrast);

// Runs all stages on a working image (CV_32FC4).
cv::Mat DevelopWorkingImage(const cv::Mat& image, const Adjustments& adjustments);

// The rendered image; empty for an empty source.
ImageBuffer DevelopPipeline(const ImageBuffer& source, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_DEVELOP_PIPELINE_H_
