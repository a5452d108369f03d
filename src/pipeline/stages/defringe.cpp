#include "pipeline/stages/defringe.h"

#include "pipeline/stages/hsl_color.h"

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

// At constant hue and lightness, the distance of a component from the lightness is proportional to
// saturation.
void DampRow(const RowPart& row, float saturation_limit, float damping) {
  for (int i = 0; i < row.columns; ++i) {
    const HslColor color = rgb_to_hsl(row.red[i], row.green[i], row.blue[i]);
    const auto damped = [=](float value) { return ClampUnit((value - color.l) * damping + color.l); };
    const bool fringe = IsFringeHue(color.h) && color.s > saturation_limit;
    row.red[i] = Choose(fringe, damped(row.red[i]), row.red[i]);
    row.green[i] = Choose(fringe, damped(row.green[i]), row.green[i]);
    row.blue[i] = Choose(fringe, damped(row.blue[i]), row.blue[i]);
  }
}

}  // namespace

RowTransform Defringe(float amount) {
  const float saturation_limit = (1.0F - amount / 100.0F) * 0.5F;
  const float damping = 1.0F - amount / 100.0F * 0.5F;
  return MakeRowTransform([=](const RowPart& row) { DampRow(row, saturation_limit, damping); });
}

}  // namespace lumvik
