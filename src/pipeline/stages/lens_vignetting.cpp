#include "pipeline/stages/lens_vignetting.h"

#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kVignettingStrength = 0.5F;

struct VignettingLens {
  float center_x;
  float center_y;
  float half_diagonal_squared;
  float amount;
};

void Compensate(const RowPart& row, const VignettingLens& lens) {
  const float dy = static_cast<float>(row.y) - lens.center_y;
  for (int i = 0; i < row.columns; ++i) {
    const float dx = static_cast<float>(row.x + i) - lens.center_x;
    const float gain =
        1.0F + kVignettingStrength * lens.amount * ((dx * dx + dy * dy) / lens.half_diagonal_squared);
    row.red[i] = ClampUnit(row.red[i] * gain);
    row.green[i] = ClampUnit(row.green[i] * gain);
    row.blue[i] = ClampUnit(row.blue[i] * gain);
  }
}

}  // namespace

RowTransform LensVignetting(float amount, cv::Size frame) {
  const float center_x = static_cast<float>(frame.width) * 0.5F;
  const float center_y = static_cast<float>(frame.height) * 0.5F;
  const VignettingLens lens = {center_x, center_y, center_y * center_y + center_x * center_x,
                               amount / 100.0F};
  return MakeRowTransform([lens](const RowPart& row) { Compensate(row, lens); });
}

}  // namespace lumvik
