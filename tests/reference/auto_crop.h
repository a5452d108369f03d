// Reference auto crop: sums every candidate pixel by pixel.
#ifndef LUMVIK_TESTS_REFERENCE_AUTO_CROP_H_
#define LUMVIK_TESTS_REFERENCE_AUTO_CROP_H_

#include <opencv2/core.hpp>

#include "base/adjustments.h"

namespace lumvik::reference {

cv::Mat SpectralSaliency(const cv::Mat& luminance);
cv::Mat EdgeStrength(const cv::Mat& luminance);
// Of a CV_32FC4 image.
cv::Mat InterestMap(const cv::Mat& image);

float ThirdsScore(const cv::Mat& interest, int x, int y, int width, int height);
CropRectangle BestCrop(const cv::Mat& interest, float aspect, float margin);

// `image` is CV_32FC4.
CropRectangle FindCrop(const cv::Mat& image, float aspect, float margin);
// `image` is CV_16UC4.
CropRectangle AutoCrop(const cv::Mat& image);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_AUTO_CROP_H_
