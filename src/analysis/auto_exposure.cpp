#include "analysis/auto_exposure.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <opencv2/imgproc.hpp>

namespace lumvik {
namespace {

// The lowest level, 0..1, at or below which half of the pixels lie; 0.5 without pixels.
float MedianLevel(const Histogram& counts) {
  const auto total = std::accumulate(counts.begin(), counts.end(), uint32_t{0});
  if (total == 0) return 0.5F;
  uint32_t counted = 0;
  for (size_t bin = 0; bin < counts.size(); ++bin) {
    counted += counts[bin];
    if (counted >= total / 2) return static_cast<float>(bin) / 255.0F;
  }
  return 1.0F;
}

}  // namespace

float exposure_from_histogram(const Histogram& luminance) {
  constexpr float kTargetLevel = 0.45F;
  constexpr float kMinLevel = 0.001F;
  constexpr float kStrength = 0.35F;
  const float level = std::max(MedianLevel(luminance), kMinLevel);
  return std::clamp(std::log2(kTargetLevel / level) * kStrength, -0.25F, 1.0F);
}

float AutoExposure(const ImageBuffer& image) {
  constexpr int kSide = 256;
  return exposure_from_histogram(
      CountLevels(ResizedImageBuffer(image, kSide, kSide, cv::INTER_LINEAR)).luminance);
}

}  // namespace lumvik
