#include "pipeline/clarity_texture.h"

#include <opencv2/imgproc.hpp>

#include "image/luminance.h"
#include "pipeline/pixel_math.h"
#include "pipeline/working_image.h"

namespace lumvik {
namespace {

constexpr double kClaritySigma = 20.0;
constexpr float kClarityGain = 0.3F;
constexpr double kTextureSigma = 3.0;
constexpr float kTextureGain = 0.2F;

void AddDetail(cv::Mat& working, const cv::Mat& luminance, double sigma, float gain) {
  cv::Mat blurred;
  cv::GaussianBlur(luminance, blurred, cv::Size(), sigma);
  ForEachRow(working.rows, [&](int y) {
    auto* pixels = working.ptr<float>(y);
    const auto* sharp = luminance.ptr<float>(y);
    const auto* soft = blurred.ptr<float>(y);
    for (int x = 0; x < working.cols; ++x) {
      const float detail = (sharp[x] - soft[x]) * gain;
      for (int c = 0; c < kColors; ++c) {
        float& value = pixels[x * kChannels + c];
        value = SaturateUnit(value + detail);
      }
    }
  });
}

}  // namespace

void ClarityTexture(cv::Mat& working, float clarity, float texture) {
  if (clarity == 0.0F && texture == 0.0F) return;
  const cv::Mat luminance = LuminancePlane(working);
  if (clarity != 0.0F) AddDetail(working, luminance, kClaritySigma, clarity / 100.0F * kClarityGain);
  if (texture != 0.0F) AddDetail(working, luminance, kTextureSigma, texture / 100.0F * kTextureGain);
}

}  // namespace lumvik
