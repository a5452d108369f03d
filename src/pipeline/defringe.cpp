#include "pipeline/defringe.h"

#include "pipeline/hsl_color.h"

namespace lumvik {
namespace {

constexpr float kPurpleLow = 0.65F;
constexpr float kPurpleHigh = 0.85F;
constexpr float kGreenLow = 0.25F;
constexpr float kGreenHigh = 0.4F;

bool IsFringeHue(float h) {
  const bool purple = h > kPurpleLow;
  return h > (purple ? kPurpleLow : kGreenLow) && h < (purple ? kPurpleHigh : kGreenHigh);
}

void DampRow(const PixelRow& row, float saturation_limit, float damping) {
  for (int i = 0; i < row.columns; ++i) {
    const HslColor color = rgb_to_hsl(row.red[i], row.green[i], row.blue[i]);
    const RgbColor rgb = hsl_to_rgb(color.h, color.s * damping, color.l);
    const bool fringe = IsFringeHue(color.h) && color.s > saturation_limit;
    row.red[i] = Choose(fringe, rgb.r, row.red[i]);
    row.green[i] = Choose(fringe, rgb.g, row.green[i]);
    row.blue[i] = Choose(fringe, rgb.b, row.blue[i]);
  }
}

}  // namespace

RowKernel Defringe(float amount) {
  if (!(amount > 0.0F)) return {};
  const float saturation_limit = (1.0F - amount / 100.0F) * 0.5F;
  const float damping = 1.0F - amount / 100.0F * 0.5F;
  return MakeRowKernel([=](const PixelRow& row) { DampRow(row, saturation_limit, damping); });
}

}  // namespace lumvik
