#include "pipeline/clarity_texture.h"

#include "image/luminance.h"
#include "pipeline/gaussian_blur.h"
#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr double kClaritySigma = 20.0;
constexpr float kClarityGain = 0.3F;
constexpr double kTextureSigma = 3.0;
constexpr float kTextureGain = 0.2F;

// Both add detail of the luminance before either acted. A gain of 0 adds nothing.
void AddDetail(const PixelRow& row, float clarity, const float* wide_blur, float texture,
               const float* narrow_blur) {
  for (int i = 0; i < row.columns; ++i) {
    const float luminance = Luminance(row.red[i], row.green[i], row.blue[i]);
    const float coarse = (luminance - wide_blur[i]) * clarity;
    const float fine = (luminance - narrow_blur[i]) * texture;
    row.red[i] = SaturateUnit(SaturateUnit(row.red[i] + coarse) + fine);
    row.green[i] = SaturateUnit(SaturateUnit(row.green[i] + coarse) + fine);
    row.blue[i] = SaturateUnit(SaturateUnit(row.blue[i] + coarse) + fine);
  }
}

}  // namespace

RowKernel ClarityTexture(const cv::Mat& luminance, float clarity, float texture) {
  const cv::Mat wide = clarity != 0.0F ? GaussianBlurred(luminance, kClaritySigma) : luminance;
  const cv::Mat narrow = texture != 0.0F ? GaussianBlurred(luminance, kTextureSigma) : luminance;
  const float coarse_gain = clarity / 100.0F * kClarityGain;
  const float fine_gain = texture / 100.0F * kTextureGain;
  return MakeRowKernel(
      [=](const PixelRow& row, const float* wide_blur, const float* narrow_blur) {
        AddDetail(row, coarse_gain, wide_blur, fine_gain, narrow_blur);
      },
      wide, narrow);
}

}  // namespace lumvik
