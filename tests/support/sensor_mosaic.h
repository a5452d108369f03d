// Simulates a 14-bit sensor's recording of an image.
#ifndef LUMVIK_TESTS_SUPPORT_SENSOR_MOSAIC_H_
#define LUMVIK_TESTS_SUPPORT_SENSOR_MOSAIC_H_

#include <array>
#include <opencv2/core.hpp>

namespace lumvik::test {

inline constexpr int kSensorBlack = 512;
inline constexpr int kSensorWhite = 16383;

// The matrix from linear sRGB to the camera's balanced colors (white is 1, 1, 1), the inverse of what LibRaw
// applies for a camera with this XYZ-to-camera matrix.
cv::Matx33d CameraFromSrgb(const cv::Matx33d& camera_from_xyz);

// The XYZ-to-camera matrix of a camera with sRGB primaries.
cv::Matx33d SrgbFromXyz();

// `rgb`: rows x columns x (red, green, blue), 8 or 16 bit unsigned, sRGB curve. The result, CV_16UC1 of
// the same size, has red at the top left, green beside and below it, blue diagonally below. `multipliers`
// (red, green, blue) restore the white balance: each color is recorded weaker by its factor.
cv::Mat MosaicRggb(const cv::Mat& rgb, const cv::Matx33d& camera_from_srgb,
                   const std::array<float, 3>& multipliers);

// The same for a sensor without color filters: Rec. 709 luminance.
cv::Mat RecordLuminance(const cv::Mat& rgb);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_SENSOR_MOSAIC_H_
