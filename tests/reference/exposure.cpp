#include "reference/exposure.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace lumvik::reference {
namespace {

constexpr float kKnee = 0.75F;
constexpr float kBlendSoftness = 1.5F;
constexpr float kCeiling = 1.0F;
constexpr float kFloor = 0.0F;

// The identity below the knee, then a hyperbola that tends to 1.
float Shoulder(float peak) {
  constexpr float kUpperKnee = 0.75F;
  constexpr float kNumerator = 0.0625F;
  constexpr float kOffset = -0.5F;
  if (kUpperKnee >= peak) return peak;
  return 1.0F - kNumerator / (peak + kOffset);
}

void ExposePixel(cv::Vec4f& pixel, float multiplier) {
  std::array<float, 3> rgb = {std::max(multiplier * pixel[0], kFloor),
                              std::max(multiplier * pixel[1], kFloor),
                              std::max(multiplier * pixel[2], kFloor)};
  const float peak = *std::max_element(rgb.begin(), rgb.end());
  if (peak > kKnee) {
    const float gray = Shoulder(peak);
    const float scale = gray / peak;
    const float weight = (peak - kKnee) / ((peak - kKnee) + kBlendSoftness);
    for (float& value : rgb) {
      const float scaled = scale * value;
      value = (gray - scaled) * weight + scaled;
    }
  }
  for (int c = 0; c < 3; ++c) pixel[c] = std::min(rgb[static_cast<size_t>(c)], kCeiling);
}

}  // namespace

void Exposure(cv::Mat& working, float exposure) {
  if (exposure == 0) return;
  const float multiplier = powf(2.0F, exposure);
  working.forEach<cv::Vec4f>([&](cv::Vec4f& pixel, const int*) { ExposePixel(pixel, multiplier); });
}

}  // namespace lumvik::reference
