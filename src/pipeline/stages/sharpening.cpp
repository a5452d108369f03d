#include "pipeline/stages/sharpening.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "base/code_scale.h"
#include "base/large_image.h"
#include "pipeline/pixel_math.h"
#include "pipeline/wide_gaussian.h"

namespace lumvik {
namespace {

constexpr float kFullAmount = 150.0F;

void SharpenPlane(float* __restrict values, const float* soft, int count, float gain, float smallest_detail) {
  for (int i = 0; i < count; ++i) {
    const float detail = values[i] - soft[i];
    const float added = std::fabs(detail) > smallest_detail ? detail * gain : 0.0F;
    values[i] = SaturateUnit(values[i] + added);
  }
}

// Changes a row beside the blur of its colors.
auto SharpenRow(float amount, float threshold) {
  const float gain = amount / kFullAmount;
  const float smallest_detail = threshold / kMaxCode;
  return [=](const PixelRow& row, const float* red, const float* green, const float* blue) {
    SharpenPlane(row.red, red, row.columns, gain, smallest_detail);
    SharpenPlane(row.green, green, row.columns, gain, smallest_detail);
    SharpenPlane(row.blue, blue, row.columns, gain, smallest_detail);
  };
}

}  // namespace

AreaKernel Sharpening(float amount, float radius, float threshold) {
  return BesideBlurredColors(GaussianKernel(static_cast<double>(radius)), SharpenRow(amount, threshold));
}

RowStep WideSharpening(const cv::Mat& working, float amount, float radius, float threshold) {
  // Wider than the largest image, a blur is its mean all over.
  const double sigma = std::min(static_cast<double>(radius), WideGaussian::kMaxSigma);
  std::vector<WideGaussian> blurs;
  for (int color = 0; color < 3; ++color) {
    cv::Mat plane = LargeImage(working.size(), CV_32F);
    cv::extractChannel(working, plane, color);
    blurs.emplace_back(plane, sigma);
  }
  return RowKernel([blurs, sharpen = SharpenRow(amount, threshold)](const PixelRow& row) {
    float blurred[3][kMaxPart] = {};
    for (size_t color = 0; color < blurs.size(); ++color) {
      blurs[color].Read(row.x, row.y, row.columns, blurred[color]);
    }
    const float* planes[] = {blurred[0], blurred[1], blurred[2]};
    ChangeRow(sharpen, row, planes[0], planes[1], planes[2]);
  });
}

}  // namespace lumvik
