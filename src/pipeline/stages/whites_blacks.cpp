#include "pipeline/stages/whites_blacks.h"

#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kWhiteScale = 0.2F;
constexpr float kBlackScale = 0.1F;

}  // namespace

RowTransform WhitesBlacks(float whites, float blacks) {
  const float black_point = blacks / 100.0F * kBlackScale;
  const float white_point = whites / 100.0F * kWhiteScale + 1.0F;
  const float gain = 1.0F / (white_point - black_point);
  return EachValue([=](float value) { return SaturateUnit((value - black_point) * gain); });
}

}  // namespace lumvik
