// The engine's pixel format and conversions to and from it.
#ifndef LUMVIK_IMAGE_IMAGE_BUFFER_H_
#define LUMVIK_IMAGE_IMAGE_BUFFER_H_

#include <opencv2/core.hpp>

namespace lumvik {

// CV_16UC4: red, green, blue, alpha, each 0..65535; opaque alpha is 65535. An empty matrix means "no image".
using ImageBuffer = cv::Mat;

// Multiplies 8-bit samples by 257 (255 becomes 65535) and adds an opaque alpha where there is none. Accepts
// CV_8UC3, CV_8UC4, CV_16UC3, CV_16UC4 in R, G, B(, A) order and an empty matrix; never shares pixels with
// `image`. Throws std::invalid_argument for any other type.
ImageBuffer ToImageBuffer(const cv::Mat& image);

// `image` resized to width x height pixels; `interpolation` is an OpenCV interpolation code.
ImageBuffer ResizedImageBuffer(const cv::Mat& image, int width, int height, int interpolation);

// CV_8UC4, each sample divided by 257 and rounded. Reuses the memory of an `rgba` of that size and type.
void ToRgba8(const ImageBuffer& image, cv::Mat& rgba);
cv::Mat ToRgba8(const ImageBuffer& image);

// CV_8UC3 without the alpha, blue first as OpenCV's encoders expect; samples as in ToRgba8.
cv::Mat ToBgr8(const ImageBuffer& image);

// CV_32FC4, 0..65535 becomes 0..1.
cv::Mat ToRgbaFloat(const ImageBuffer& image);

// CV_16UC3 without the alpha; empty for an empty image.
cv::Mat ToRgb16(const ImageBuffer& image);

// Copies the pixels, so that `destination` never shares them with `source`; an empty source clears it.
void AssignImage(ImageBuffer& destination, const ImageBuffer& source);

// Scales both sides in place by `factor`, below 1, with area averaging. Neither side falls below one pixel.
void ShrinkImage(cv::Mat& image, float factor);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_IMAGE_BUFFER_H_
