#include "reference/develop_pipeline.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "reference/clamp.h"
#include "reference/clarity_texture.h"
#include "reference/dehaze.h"
#include "reference/exposure.h"
#include "reference/film_grain.h"
#include "reference/geometry.h"
#include "reference/hsl_bands.h"
#include "reference/lens_corrections.h"
#include "reference/noise_reduction.h"
#include "reference/post_crop_vignette.h"
#include "reference/saturation_vibrance.h"
#include "reference/sharpening.h"
#include "reference/split_toning.h"
#include "reference/tone_curve.h"
#include "reference/tone_range.h"
#include "reference/white_balance.h"

namespace lumvik::reference {

cv::Mat ToWorkingImage(const ImageBuffer& source) {
  cv::Mat working;
  source.convertTo(working, CV_32FC4, 1.5259021896696422e-5, 0);
  return working;
}

ImageBuffer FromWorkingImage(const cv::Mat& working) {
  ImageBuffer image;
  working.convertTo(image, CV_16UC4, 65535.0, 0);
  return image;
}

void Brightness(cv::Mat& working, float brightness) {
  const float exponent = Clamp(1.0F / (brightness / 100.0F * 0.5F + 1.0F), 0.1F, 10.0F);
  std::vector<cv::Mat> planes;
  cv::split(working, planes);
  for (size_t c = 0; c < 3; ++c) cv::pow(planes[c], static_cast<double>(exponent), planes[c]);
  cv::merge(planes, working);
}

void Contrast(cv::Mat& working, float contrast) {
  const float k = std::max(contrast / 100.0F * 0.8F + 1.0F, 0.2F);
  for (int row = 0; row < working.rows; ++row) {
    auto* pixels = working.ptr<cv::Vec4f>(row);
    for (int column = 0; column < working.cols; ++column) {
      for (int c = 0; c < 3; ++c) {
        const float t = (pixels[column][c] - 0.5F) * k;
        const float y = t / (std::fabs(t) * 0.4F + 1.0F) + 0.5F;
        pixels[column][c] = y < 0.0F ? 0.0F : std::min(y, 1.0F);
      }
    }
  }
}

cv::Mat DevelopWorkingImage(const cv::Mat& image, const Adjustments& adjustments) {
  if (image.empty()) return {};
  cv::Mat working = image.clone();
  const bool neutral_white =
      std::fabs(adjustments.temperature - 6500.0F) < 1.0F && std::fabs(adjustments.tint) < 0.1F;
  if (!neutral_white) WhiteBalance(working, adjustments.temperature, adjustments.tint);
  if (adjustments.exposure != 0) Exposure(working, adjustments.exposure);
  if (adjustments.brightness != 0) Brightness(working, adjustments.brightness);
  HighlightsShadows(working, adjustments);
  WhitesBlacks(working, adjustments);
  if (adjustments.contrast != 0) Contrast(working, adjustments.contrast);
  ToneCurveStage(working, adjustments);
  ClarityTexture(working, adjustments);
  Dehaze(working, adjustments);
  SaturationVibrance(working, adjustments);
  HslBands(working, adjustments);
  SplitToning(working, adjustments);
  NoiseReduction(working, adjustments);
  Sharpening(working, adjustments);
  LensCorrections(working, adjustments);
  Geometry(working, adjustments);
  PostCropVignette(working, adjustments);
  FilmGrain(working, adjustments);
  return working;
}

ImageBuffer DevelopPipeline(const ImageBuffer& source, const Adjustments& adjustments) {
  if (source.empty()) return {};
  return FromWorkingImage(DevelopWorkingImage(ToWorkingImage(source), adjustments));
}

}  // namespace lumvik::reference
