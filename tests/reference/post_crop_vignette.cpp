#include "reference/post_crop_vignette.h"

#include <algorithm>
#include <cmath>

#include "reference/clamp.h"

namespace lumvik::reference {

namespace {

// Of a point whose coordinates are 0 in the center and +-1 at the edges: elliptic, and below roundness 0
// blended with the rectangular distance.
float Distance(float nx, float ny, float roundness) {
  const float r = (roundness + 100.0F) / 200.0F;
  const float k = 2.0F * r;
  const float elliptic = std::sqrt(ny * ny + nx * nx);
  if (!(r < 0.5F)) return elliptic;
  const float rectangular = std::max(std::fabs(ny), std::fabs(nx));
  return (elliptic - rectangular) * k + rectangular;
}

}  // namespace

void PostCropVignette(cv::Mat& working, const Adjustments& adjustments) {
  if (adjustments.vignette_amount == 0 || working.rows == 0) return;
  const float amount = adjustments.vignette_amount / 100.0F;
  const float midpoint = adjustments.vignette_midpoint / 100.0F;
  const float cy = static_cast<float>(working.rows) * 0.5F;
  const float cx = static_cast<float>(working.cols) * 0.5F;
  // Cancels the sign of the weight: either sign of the amount brightens.
  const float direction = amount < 0.0F ? 1.0F : -1.0F;
  for (int y = 0; y < working.rows; ++y) {
    auto* row = working.ptr<cv::Vec4f>(y);
    const float ny = (static_cast<float>(y) - cy) / cy;
    for (int x = 0; x < working.cols; ++x) {
      const float nx = (static_cast<float>(x) - cx) / cx;
      const float d = Distance(nx, ny, adjustments.vignette_roundness);
      const float t = ClampUnit((d - midpoint) / (1.0F - midpoint + 1e-6F));
      const float w = (3.0F - 2.0F * t) * (t * t) * -amount;
      for (int c = 0; c < 3; ++c) {
        const float p = row[x][c];
        row[x][c] = ClampUnit((1.0F - p) * w * direction + p);
      }
    }
  }
}

}  // namespace lumvik::reference
