#include "pipeline/clarity_texture.h"

#include "image/luminance.h"
#include "pipeline/pixel_math.h"
#include "pipeline/wide_gaussian.h"

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

AreaKernel Texture(float texture) {
  const float gain = texture / 100.0F * kTextureGain;
  return BesideBlurredLuminance(
      GaussianWindow(kTextureSigma),
      [gain](const PixelRow& row, const float* blur) { AddDetail(row, 0.0F, blur, gain, blur); });
}

RowStep ClarityTexture(const cv::Mat& luminance, float clarity, float texture) {
  const float coarse_gain = clarity / 100.0F * kClarityGain;
  const float fine_gain = texture / 100.0F * kTextureGain;
  const WideGaussian wide(luminance, kClaritySigma);
  const auto add = [=](const PixelRow& row, const float* narrow_blur) {
    float wide_blur[kMaxPart];
    wide.Read(row.x, row.y, row.columns, wide_blur);
    const auto add_detail = [=](const PixelRow& part, const float* coarse, const float* fine) {
      AddDetail(part, coarse_gain, coarse, fine_gain, fine == nullptr ? coarse : fine);
    };
    ChangeRow(add_detail, row, static_cast<const float*>(wide_blur), narrow_blur);
  };
  if (texture == 0.0F) return RowKernel([add](const PixelRow& row) { add(row, nullptr); });
  return AreaKernel{GaussianWindow(kTextureSigma), AreaKernel::Of::kLuminance,
                    [add](const PixelRow& row, const float* const* blurred) { add(row, blurred[0]); }};
}

}  // namespace lumvik
