#include "support/sensor_mosaic.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace lumvik::test {
namespace {

constexpr int kRed = 0, kGreen = 1, kBlue = 2;
constexpr int kFilterColor[2][2] = {{kRed, kGreen}, {kGreen, kBlue}};

// ITU-R BT.709 primaries, D65, in LibRaw's digits.
const cv::Matx33d kXyzFromSrgb(0.4124564, 0.3575761, 0.1804375,  //
                               0.2126729, 0.7151522, 0.0721750,  //
                               0.0193339, 0.1191920, 0.9503041);

// IEC 61966-2-1 for every 16-bit code.
const std::vector<float>& LinearFromCode() {
  static const std::vector<float> kTable = [] {
    std::vector<float> linear(65536);
    for (size_t code = 0; code < linear.size(); ++code) {
      const double v = static_cast<double>(code) / 65535.0;
      linear[code] = static_cast<float>(v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4));
    }
    return linear;
  }();
  return kTable;
}

// Each sample is `weights[row parity][column parity]` times the pixel's linear color, 0..1 of the range.
cv::Mat Record(const cv::Mat& rgb, const cv::Vec3f weights[2][2]) {
  const std::vector<float>& linear = LinearFromCode();
  const double to_16_bit = rgb.depth() == CV_8U ? 257.0 : 1.0;
  cv::Mat sensor(rgb.size(), CV_16UC1);
  cv::Mat codes;
  for (int row = 0; row < rgb.rows; ++row) {
    rgb.row(row).convertTo(codes, CV_16U, to_16_bit);
    const auto* pixel = codes.ptr<cv::Vec<uint16_t, 3>>();
    auto* out = sensor.ptr<uint16_t>(row);
    for (int column = 0; column < rgb.cols; ++column) {
      const cv::Vec3f& weight = weights[row & 1][column & 1];
      const cv::Vec<uint16_t, 3>& code = pixel[column];
      const float light =
          weight[0] * linear[code[0]] + weight[1] * linear[code[1]] + weight[2] * linear[code[2]];
      const float range = static_cast<float>(kSensorWhite - kSensorBlack);
      out[column] = static_cast<uint16_t>(kSensorBlack + std::lrint(range * std::clamp(light, 0.0f, 1.0f)));
    }
  }
  return sensor;
}

}  // namespace

cv::Matx33d SrgbFromXyz() {
  return kXyzFromSrgb.inv();
}

cv::Matx33d CameraFromSrgb(const cv::Matx33d& camera_from_xyz) {
  cv::Matx33d camera = camera_from_xyz * kXyzFromSrgb;
  for (int row = 0; row < 3; ++row) {
    const double white = camera(row, 0) + camera(row, 1) + camera(row, 2);
    for (int column = 0; column < 3; ++column) camera(row, column) /= white;
  }
  return camera;
}

cv::Mat MosaicRggb(const cv::Mat& rgb, const cv::Matx33d& camera_from_srgb,
                   const std::array<float, 3>& multipliers) {
  // The least amplified color sets the white point, so that it fills the range.
  const float least = *std::min_element(multipliers.begin(), multipliers.end());
  cv::Vec3f weights[2][2];
  for (int row = 0; row < 2; ++row) {
    for (int column = 0; column < 2; ++column) {
      const int color = kFilterColor[row][column];
      const double gain = least / multipliers[static_cast<size_t>(color)];
      for (int c = 0; c < 3; ++c) {
        weights[row][column][c] = static_cast<float>(gain * camera_from_srgb(color, c));
      }
    }
  }
  return Record(rgb, weights);
}

cv::Mat RecordLuminance(const cv::Mat& rgb) {
  const cv::Vec3f luminance(0.2126f, 0.7152f, 0.0722f);
  const cv::Vec3f weights[2][2] = {{luminance, luminance}, {luminance, luminance}};
  return Record(rgb, weights);
}

}  // namespace lumvik::test
