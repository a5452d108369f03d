#include "reference/tone_range.h"

#include <cmath>
#include <vector>

#include "reference/clamp.h"
#include "reference/luminance.h"

namespace lumvik::reference {
namespace {

constexpr float kShadowTop = 0.55F;
constexpr float kHighlightBottom = 0.45F;
constexpr float kShadowStrength = 1.2F;
constexpr float kHighlightStrength = 0.5F;
constexpr float kMinScaledLuminance = 1e-6F;

float LiftShadows(float luminance, float shadows) {
  const float d = (kShadowTop - luminance) / kShadowTop;
  const float gamma = 1.0F / (d * d * shadows * kShadowStrength + 1.0F);
  return powf(luminance, Clamp(gamma, 0.3F, 3.0F));
}

float HighlightGain(float luminance, float highlights) {
  const float e = (luminance - kHighlightBottom) / 0.55F;
  return Clamp(e * e * highlights * kHighlightStrength + 1.0F, 0.3F, 2.0F);
}

}  // namespace

void HighlightsShadows(cv::Mat& working, const Adjustments& adjustments) {
  if (adjustments.highlights == 0 && adjustments.shadows == 0) return;
  const float s = adjustments.shadows / 100.0F;
  const float h = adjustments.highlights / 100.0F;
  for (int y = 0; y < working.rows; ++y) {
    auto* row = working.ptr<cv::Vec4f>(y);
    for (int x = 0; x < working.cols; ++x) {
      cv::Vec4f& pixel = row[x];
      const float luminance = Luminance(pixel);
      if (luminance < kMinScaledLuminance) continue;
      float target = luminance;
      if (s != 0.0F && luminance < kShadowTop) target = LiftShadows(luminance, s);
      if (h != 0.0F && luminance > kHighlightBottom) {
        target = ClampUnit(HighlightGain(luminance, h) * target);
      }
      if (target == luminance) continue;
      const float ratio = target / luminance;
      for (int c = 0; c < 3; ++c) pixel[c] = ClampUnit(pixel[c] * ratio);
    }
  }
}

void WhitesBlacks(cv::Mat& working, const Adjustments& adjustments) {
  if (adjustments.whites == 0 && adjustments.blacks == 0) return;
  const float black_point = adjustments.blacks / 100.0F * 0.1F;
  const float white_point = adjustments.whites / 100.0F * 0.2F + 1.0F;
  const float range = white_point - black_point;
  std::vector<cv::Mat> planes;
  cv::split(working, planes);
  for (size_t c = 0; c < 3; ++c) {
    planes[c] = (planes[c] - cv::Scalar(black_point)) / range;
    ClampPlane(planes[c]);
  }
  cv::merge(planes, working);
}

}  // namespace lumvik::reference
