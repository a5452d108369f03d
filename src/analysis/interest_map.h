// Estimates which parts of an image draw the eye.
#ifndef LUMVIK_ANALYSIS_INTEREST_MAP_H_
#define LUMVIK_ANALYSIS_INTEREST_MAP_H_

#include <opencv2/core.hpp>

namespace lumvik {

// The saliency of a luminance plane (CV_32FC1) as 64 x 64 pixels (CV_32FC1, 0..1). X. Hou and L. Zhang,
// "Saliency Detection: A Spectral Residual Approach", CVPR 2007.
// NOLINTNEXTLINE(readability-identifier-naming): the measurements are named as the exported tools are
cv::Mat spectral_saliency(const cv::Mat& luminance);

// The magnitude of the Sobel gradient of a luminance plane, in its size (CV_32FC1, 0..1).
// NOLINTNEXTLINE(readability-identifier-naming): see above
cv::Mat edge_strength(const cv::Mat& luminance);

// The smoothed sum of both for an image (CV_32FC4), in its size (CV_32FC1, 0..1).
cv::Mat InterestMap(const cv::Mat& image);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_INTEREST_MAP_H_
