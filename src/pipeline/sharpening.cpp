#include "pipeline/sharpening.h"

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "pipeline/pixel_math.h"
#include "pipeline/working_image.h"

namespace lumvik {
namespace {

constexpr float kFullAmount = 150.0F;
constexpr float kCodes = 65535.0F;

}  // namespace

void Sharpening(cv::Mat& working, float amount, float radius, float threshold) {
  if (amount <= 0.0F) return;
  const float gain = amount / kFullAmount;
  const float smallest_detail = threshold / kCodes;
  for (int c = 0; c < kColors; ++c) {
    const cv::Mat plane = ColorPlane(working, c);
    cv::Mat blurred;
    cv::GaussianBlur(plane, blurred, cv::Size(), static_cast<double>(radius));
    ForEachRow(working.rows, [&](int y) {
      const auto* sharp = plane.ptr<float>(y);
      const auto* soft = blurred.ptr<float>(y);
      auto* pixels = working.ptr<float>(y);
      for (int x = 0; x < working.cols; ++x) {
        const float detail = sharp[x] - soft[x];
        const float added = std::fabs(detail) > smallest_detail ? detail * gain : 0.0F;
        pixels[x * kChannels + c] = SaturateUnit(sharp[x] + added);
      }
    });
  }
}

}  // namespace lumvik
