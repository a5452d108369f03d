// Images that are read and written a part of a row at a time.
#ifndef LUMVIK_PIPELINE_ROW_IMAGE_H_
#define LUMVIK_PIPELINE_ROW_IMAGE_H_

#include <opencv2/core.hpp>

#include "pipeline/row_kernel.h"

namespace lumvik {

inline constexpr int kChannels = 4;  // of a packed image: red, green, blue, alpha

// An image that may be computed while it is read: `read` fills a part with its pixels, in any order of parts.
struct RowImage {
  cv::Size size;
  RowKernel read;
};

// The rows of a packed image, which they share: 16-bit (CV_16UC4) or working (CV_32FC4, source / 65535).
RowImage RowsOf(const cv::Mat& packed);

// Fills a part from packed values, kChannels for each pixel.
void LoadPixels(const float* packed, const PixelRow& part);

// The kernel that writes rows into a packed image of either type. 16-bit values are rounded to nearest and
// clamped to 0..65535; a NaN gives 0.
RowKernel StoreIn(const cv::Mat& packed);

// Writes the luminance of a row of any width.
void WriteLuminance(const PixelRow& row, float* luminance);

// The kernel that writes it into `plane` (CV_32FC1).
RowKernel StoreLuminance(const cv::Mat& plane);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_ROW_IMAGE_H_
