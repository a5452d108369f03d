#include "analysis/scene_analysis.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "analysis/auto_exposure.h"
#include "analysis/histogram.h"
#include "analysis/reduced_copy.h"

namespace lumvik {
namespace {

constexpr int kSceneWidth = 512;
constexpr float kClippedShare = 0.01F;  // of the pixels may be black or white without a correction

// Standard deviation of the levels, 0..1.
float Spread(const Histogram& counts) {
  double total = 0;
  double sum = 0;
  double sum_of_squares = 0;
  for (size_t bin = 0; bin < counts.size(); ++bin) {
    const double level = static_cast<double>(bin) / 255.0;
    total += counts[bin];
    sum += counts[bin] * level;
    sum_of_squares += counts[bin] * level * level;
  }
  const double mean = sum / total;
  return static_cast<float>(std::sqrt(std::max(sum_of_squares / total - mean * mean, 0.0)));
}

// The narrower the histogram, the more.
float ContrastFor(float spread) {
  constexpr float kTypicalSpread = 0.15F;
  return std::clamp((kTypicalSpread - spread) / kTypicalSpread * 22.0F, -15.0F, 28.0F);
}

float HighlightsFor(float white_share) {
  return white_share > kClippedShare ? -std::min(white_share * 500.0F, 40.0F) : 0.0F;
}

float ShadowsFor(float black_share) {
  const float lift = black_share > kClippedShare ? black_share * 400.0F : 0.0F;
  return std::clamp(lift, 15.0F, 25.0F);
}

// The less detail, the more. Detail is measured as the standard deviation of the Laplacian.
float LuminanceNoiseReductionFor(const cv::Mat& luminance) {
  constexpr float kDetailed = 0.1F;
  cv::Mat detail;
  cv::Laplacian(luminance, detail, CV_32F, 1, 1, 0, cv::BORDER_REFLECT_101);
  cv::Scalar mean;
  cv::Scalar deviation;
  cv::meanStdDev(detail, mean, deviation);
  const float n = (kDetailed - static_cast<float>(deviation[0])) / kDetailed * 80.0F + 20.0F;
  return std::clamp(n, 0.0F, 35.0F);
}

}  // namespace

Suggestions analyze_scene(const ImageBuffer& image) {
  Suggestions suggestions = {};
  if (image.empty()) return suggestions;
  const ImageBuffer copy = ReducedCopy(image, kSceneWidth);
  const Histogram counts = CountLevels(copy).luminance;
  const auto pixels = static_cast<float>(copy.total());
  suggestions[kExposureSlot] = exposure_from_histogram(counts);
  suggestions[kContrastSlot] = ContrastFor(Spread(counts));
  suggestions[kHighlightsSlot] = HighlightsFor(static_cast<float>(counts.back()) / pixels);
  suggestions[kShadowsSlot] = ShadowsFor(static_cast<float>(counts.front()) / pixels);
  suggestions[kBlacksSlot] = 5;
  suggestions[kTemperatureSlot] = 6500;
  suggestions[kTintSlot] = 0;
  suggestions[kSaturationSlot] = 5;
  suggestions[kVibranceSlot] = 16;
  suggestions[kSharpeningAmountSlot] = 6;
  suggestions[kNrLuminanceSlot] = LuminanceNoiseReductionFor(WeightedLuminance(ToRgbaFloat(copy)));
  suggestions[kNrColorSlot] = 1;
  return suggestions;
}

}  // namespace lumvik
