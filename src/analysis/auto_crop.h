// Which part of a photograph to keep.
#ifndef LUMVIK_ANALYSIS_AUTO_CROP_H_
#define LUMVIK_ANALYSIS_AUTO_CROP_H_

#include "analysis/rectangle_sums.h"
#include "base/adjustments.h"
#include "image/image_buffer.h"

namespace lumvik {

// The interest around the four points where the lines of thirds of a candidate cross.
// NOLINTNEXTLINE(readability-identifier-naming): the measurements are named as the exported tools are
float thirds_score(const RectangleSums& interest, const cv::Rect& candidate);

// The crop of an interest map (CV_32FC1) with the best score, in fractions of its size. `aspect` is width
// over height, `margin` the fraction to stay away from every edge, cut to whole pixels. The whole frame when
// nothing fits.
CropRectangle BestCrop(const cv::Mat& interest, float aspect, float margin);

// The same for an image (CV_32FC4). An aspect of at most 0.01 counts as 3:2; of an empty image the whole
// frame is kept.
// NOLINTNEXTLINE(readability-identifier-naming): likewise
CropRectangle find_crop(const cv::Mat& image, float aspect, float margin);

// 3:2 with margins of 2 %, found on a copy of the image (CV_16UC4, not empty) of 512 columns.
CropRectangle AutoCrop(const ImageBuffer& image);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_AUTO_CROP_H_
