#include "pipeline/sharpening.h"

#include <cmath>

#include "pipeline/gaussian_blur.h"
#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kFullAmount = 150.0F;
constexpr float kCodes = 65535.0F;

void SharpenPlane(float* __restrict values, const float* soft, int count, float gain, float smallest_detail) {
  for (int i = 0; i < count; ++i) {
    const float detail = values[i] - soft[i];
    const float added = std::fabs(detail) > smallest_detail ? detail * gain : 0.0F;
    values[i] = SaturateUnit(values[i] + added);
  }
}

}  // namespace

RowKernel Sharpening(const ColorPlanes& image, float amount, float radius, float threshold) {
  const float gain = amount / kFullAmount;
  const float smallest_detail = threshold / kCodes;
  const auto sigma = static_cast<double>(radius);
  return MakeRowKernel(
      [=](const PixelRow& row, const float* red, const float* green, const float* blue) {
        SharpenPlane(row.red, red, row.columns, gain, smallest_detail);
        SharpenPlane(row.green, green, row.columns, gain, smallest_detail);
        SharpenPlane(row.blue, blue, row.columns, gain, smallest_detail);
      },
      GaussianBlurred(image.red, sigma), GaussianBlurred(image.green, sigma),
      GaussianBlurred(image.blue, sigma));
}

}  // namespace lumvik
