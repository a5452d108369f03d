#include "pipeline/sharpening.h"

#include <cmath>

#include "pipeline/gaussian_blur.h"
#include "pipeline/pixel_math.h"
#include "pipeline/working_image.h"

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

RowKernel Sharpening(const cv::Mat& working, float amount, float radius, float threshold) {
  const float gain = amount / kFullAmount;
  const float smallest_detail = threshold / kCodes;
  std::array<cv::Mat, kColors> blurred = ColorPlanes(working);
  for (cv::Mat& plane : blurred) plane = GaussianBlurred(plane, static_cast<double>(radius));
  return MakeRowKernel(
      [=](const PixelRow& row, const float* red, const float* green, const float* blue) {
        SharpenPlane(row.red, red, row.columns, gain, smallest_detail);
        SharpenPlane(row.green, green, row.columns, gain, smallest_detail);
        SharpenPlane(row.blue, blue, row.columns, gain, smallest_detail);
      },
      blurred[0], blurred[1], blurred[2]);
}

}  // namespace lumvik
