#include "pipeline/stages/clarity_texture.h"

#include "base/luminance.h"
#include "pipeline/packed_rows.h"
#include "pipeline/pixel_math.h"
#include "pipeline/wide_gaussian.h"

namespace lumvik {
namespace {

constexpr double kClaritySigma = 20.0;
constexpr float kClarityGain = 0.3F;
constexpr double kTextureSigma = 3.0;
constexpr float kTextureGain = 0.2F;

void AddDetail(const RowPart& row, float gain, const float* blur) {
  for (int i = 0; i < row.columns; ++i) {
    const float detail = (Luminance(row.red[i], row.green[i], row.blue[i]) - blur[i]) * gain;
    row.red[i] = SaturateUnit(row.red[i] + detail);
    row.green[i] = SaturateUnit(row.green[i] + detail);
    row.blue[i] = SaturateUnit(row.blue[i] + detail);
  }
}

// Both details are those of the luminance before either is added.
void AddDetails(const RowPart& row, float clarity, const float* wide_blur, float texture,
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

RowStep ClarityTexture(float clarity, float texture, const StoreRows& store) {
  const float coarse = ClarityGain(clarity);
  const float fine = TextureGain(texture);
  const Gaussian narrow = Gaussian::OfSigma(kTextureSigma);
  if (clarity == 0.0F) {
    return NextToBlurredLuminance(
        narrow, [fine](const RowPart& part, const float* blur) { AddDetail(part, fine, blur); });
  }
  const WideGaussian wide(store(CV_32F, StoreLuminance), Gaussian::OfSigma(kClaritySigma));
  const auto next_to_wide_blur = [wide](const RowPart& part, const auto& change, auto... values) {
    float wide_blur[kMaxPart];
    wide.Read(part.x, part.y, part.columns, wide_blur);
    ChangePart(change, part, static_cast<const float*>(wide_blur), values...);
  };
  if (texture == 0.0F) {
    return RowTransform{[=](const RowPart& part) {
      next_to_wide_blur(part, [=](const RowPart& own, const float* blur) { AddDetail(own, coarse, blur); });
    }};
  }
  const auto add_both = [=](const RowPart& part, const float* wide_blur, const float* narrow_blur) {
    AddDetails(part, coarse, wide_blur, fine, narrow_blur);
  };
  return AreaTransform{narrow, AreaTransform::Input::kLuminance,
                       [=](const RowPart& part, const float* const* blurred) {
                         next_to_wide_blur(part, add_both, blurred[0]);
                       }};
}

}  // namespace lumvik
