#include "pipeline/stages/clarity_texture.h"

#include "base/luminance.h"
#include "pipeline/pixel_math.h"
#include "pipeline/wide_gaussian.h"

namespace lumvik {
namespace {

constexpr double kClaritySigma = 20.0;
constexpr float kClarityGain = 0.3F;
constexpr double kTextureSigma = 3.0;
constexpr float kTextureGain = 0.2F;

void AddDetail(const PixelRow& row, float gain, const float* blur) {
  for (int i = 0; i < row.columns; ++i) {
    const float detail = (Luminance(row.red[i], row.green[i], row.blue[i]) - blur[i]) * gain;
    row.red[i] = SaturateUnit(row.red[i] + detail);
    row.green[i] = SaturateUnit(row.green[i] + detail);
    row.blue[i] = SaturateUnit(row.blue[i] + detail);
  }
}

// Both of the luminance before either acted.
void AddDetails(const PixelRow& row, float clarity, const float* wide_blur, float texture,
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

float ClarityGain(float clarity) {
  return clarity / 100.0F * kClarityGain;
}

float TextureGain(float texture) {
  return texture / 100.0F * kTextureGain;
}

}  // namespace

AreaKernel Texture(float texture) {
  return BesideBlurredLuminance(
      GaussianKernel(kTextureSigma),
      [gain = TextureGain(texture)](const PixelRow& row, const float* blur) { AddDetail(row, gain, blur); });
}

RowStep ClarityTexture(const cv::Mat& luminance, float clarity, float texture) {
  const auto beside_wide_blur = [wide = WideGaussian(luminance, kClaritySigma)](
                                    const PixelRow& row, const auto& change, auto... values) {
    float wide_blur[kMaxPart];
    wide.Read(row.x, row.y, row.columns, wide_blur);
    ChangeRow(change, row, static_cast<const float*>(wide_blur), values...);
  };
  const float coarse = ClarityGain(clarity);
  if (texture == 0.0F) {
    return RowKernel([=](const PixelRow& row) {
      beside_wide_blur(row, [=](const PixelRow& part, const float* blur) { AddDetail(part, coarse, blur); });
    });
  }
  const float fine = TextureGain(texture);
  const auto add_both = [=](const PixelRow& part, const float* wide_blur, const float* narrow_blur) {
    AddDetails(part, coarse, wide_blur, fine, narrow_blur);
  };
  return AreaKernel{
      GaussianKernel(kTextureSigma), AreaKernel::Of::kLuminance,
      [=](const PixelRow& row, const float* const* blurred) { beside_wide_blur(row, add_both, blurred[0]); }};
}

}  // namespace lumvik
