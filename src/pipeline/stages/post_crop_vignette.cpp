#include "pipeline/stages/post_crop_vignette.h"

#include <algorithm>
#include <cmath>

#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kMinFalloff = 1e-6F;

struct Vignette {
  float center_x;
  float center_y;
  float amount;
  float midpoint;
  float ellipse_share;  // of the distance, against that of a rectangle
};

void Brighten(const RowPart& row, const Vignette& vignette) {
  const float direction = vignette.amount < 0.0F ? 1.0F : -1.0F;
  const bool rectangular = vignette.ellipse_share < 1.0F;
  const float ny = (static_cast<float>(row.y) - vignette.center_y) / vignette.center_y;
  for (int i = 0; i < row.columns; ++i) {
    const float nx = (static_cast<float>(row.x + i) - vignette.center_x) / vignette.center_x;
    const float ellipse = std::sqrt(ny * ny + nx * nx);
    const float rectangle = std::max(std::fabs(ny), std::fabs(nx));
    const float distance = rectangular ? (ellipse - rectangle) * vignette.ellipse_share + rectangle : ellipse;
    const float t = ClampUnit((distance - vignette.midpoint) / (1.0F - vignette.midpoint + kMinFalloff));
    const float weight = (3.0F - 2.0F * t) * (t * t) * -vignette.amount;
    const auto mix = [=](float value) { return ClampUnit((1.0F - value) * weight * direction + value); };
    row.red[i] = mix(row.red[i]);
    row.green[i] = mix(row.green[i]);
    row.blue[i] = mix(row.blue[i]);
  }
}

}  // namespace

RowTransform PostCropVignette(const VignetteSettings& settings, cv::Size frame) {
  const float roundness = (settings.roundness + 100.0F) / 200.0F;
  const Vignette vignette = {static_cast<float>(frame.width) * 0.5F, static_cast<float>(frame.height) * 0.5F,
                             settings.amount / 100.0F, settings.midpoint / 100.0F, 2.0F * roundness};
  return MakeRowTransform([vignette](const RowPart& row) { Brighten(row, vignette); });
}

}  // namespace lumvik
