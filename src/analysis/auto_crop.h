// Suggests a crop.
#ifndef LUMVIK_ANALYSIS_AUTO_CROP_H_
#define LUMVIK_ANALYSIS_AUTO_CROP_H_

#include "analysis/rectangle_sums.h"
#include "base/adjustments.h"
#include "image/image_buffer.h"

namespace lumvik {

// The sum of the interest around the four intersections of a candidate's lines of thirds.
// NOLINTNEXTLINE(readability-identifier-naming): the measurements are named as the exported tools are
float thirds_score(const RectangleSums& interest, const cv::Rect& candidate);

// The crop of an interest map (CV_32FC1) with the highest score, in fractions of its size. `aspect` is width
// over height, `margin` the minimum distance to each edge as a fraction, truncated to whole pixels. Returns
// the whole frame if nothing fits.
CropRectangle BestCrop(const cv::Mat& interest, float aspect, float margin);

// The same for an image (CV_32FC4). An aspect of 0.01 or less means 3:2; an empty image keeps its whole
// frame. NOLINTNEXTLINE(readability-identifier-naming): see above
CropRectangle find_crop(const cv::Mat& image, float aspect, float margin);

// A 3:2 crop with margins of 2 %, found in a copy of the image (CV_16UC4, not empty) 512 pixels wide.
CropRectangle AutoCrop(const ImageBuffer& image);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_AUTO_CROP_H_
