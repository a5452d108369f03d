// Where in an image the eye rests.
#ifndef LUMVIK_ANALYSIS_INTEREST_MAP_H_
#define LUMVIK_ANALYSIS_INTEREST_MAP_H_

#include <opencv2/core.hpp>

namespace lumvik {

// What stands out from the rest, 64 x 64 (CV_32FC1, 0..1), of a luminance (CV_32FC1): the spectral residual
// of X. Hou and L. Zhang, "Saliency Detection: A Spectral Residual Approach", CVPR 2007.
// NOLINTNEXTLINE(readability-identifier-naming): the measurements are named as the exported tools are
cv::Mat spectral_saliency(const cv::Mat& luminance);

// Sobel gradient of a luminance, of its size (CV_32FC1, 0..1).
// NOLINTNEXTLINE(readability-identifier-naming): likewise
cv::Mat edge_strength(const cv::Mat& luminance);

// Both together, smoothed, of the size of the image (CV_32FC4): CV_32FC1, 0..1.
cv::Mat InterestMap(const cv::Mat& image);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_INTEREST_MAP_H_
