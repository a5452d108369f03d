#include "reference/saturation_vibrance.h"

#include <algorithm>
#include <array>

#include "reference/clamp.h"
#include "reference/luminance.h"

namespace lumvik::reference {
namespace {

constexpr float kColorfulnessScale = 3.0F;
constexpr float kVibranceStrength = 0.8F;

void ScaleFromLuminance(cv::Vec4f& pixel, float factor) {
  const float luminance = Luminance(pixel);
  for (int c = 0; c < 3; ++c) pixel[c] = ClampUnit((pixel[c] - luminance) * factor + luminance);
}

}  // namespace

void SaturationVibrance(cv::Mat& working, const Adjustments& adjustments) {
  if (adjustments.saturation == 0 && adjustments.vibrance == 0) return;
  const float s = adjustments.saturation / 100.0F + 1.0F;
  const float v = adjustments.vibrance / 100.0F;
  for (int y = 0; y < working.rows; ++y) {
    auto* row = working.ptr<cv::Vec4f>(y);
    for (int x = 0; x < working.cols; ++x) {
      cv::Vec4f& pixel = row[x];
      // Before the saturation changes the pixel.
      const std::array<float, 3> rgb = {pixel[0], pixel[1], pixel[2]};
      const float mx = *std::max_element(rgb.begin(), rgb.end());
      const float mn = *std::min_element(rgb.begin(), rgb.end());
      if (adjustments.saturation != 0) ScaleFromLuminance(pixel, s);
      if (adjustments.vibrance != 0) {
        const float m = ClampUnit((mx - mn) * kColorfulnessScale);
        ScaleFromLuminance(pixel, (1.0F - m) * v * kVibranceStrength + 1.0F);
      }
    }
  }
}

}  // namespace lumvik::reference
