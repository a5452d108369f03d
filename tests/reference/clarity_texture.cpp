#include "reference/clarity_texture.h"

#include <opencv2/imgproc.hpp>
#include <vector>

#include "reference/clamp.h"
#include "reference/luminance.h"

namespace lumvik::reference {
namespace {

constexpr double kClaritySigma = 20.0;
constexpr float kClarityGain = 0.3F;
constexpr double kTextureSigma = 3.0;
constexpr float kTextureGain = 0.2F;

void AddHighPass(std::vector<cv::Mat>& planes, const cv::Mat& luminance, double sigma, float gain) {
  cv::Mat blurred;
  cv::GaussianBlur(luminance, blurred, cv::Size(0, 0), sigma, 0, cv::BORDER_REFLECT_101);
  const cv::Mat detail = luminance - blurred;
  for (size_t c = 0; c < 3; ++c) {
    planes[c] = planes[c] + detail * static_cast<double>(gain);
    ClampPlane(planes[c]);
  }
}

}  // namespace

void ClarityTexture(cv::Mat& working, const Adjustments& adjustments) {
  const float clarity = adjustments.clarity;
  const float texture = adjustments.texture;
  if (clarity == 0 && texture == 0) return;
  std::vector<cv::Mat> planes;
  cv::split(working, planes);
  // Both take the luminance from before either was added.
  const cv::Mat luminance = LuminancePlane(planes);
  if (clarity != 0) AddHighPass(planes, luminance, kClaritySigma, clarity / 100.0F * kClarityGain);
  if (texture != 0) AddHighPass(planes, luminance, kTextureSigma, texture / 100.0F * kTextureGain);
  cv::merge(planes, working);
}

}  // namespace lumvik::reference
