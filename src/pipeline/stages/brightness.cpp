#include "pipeline/stages/brightness.h"

#include <algorithm>

#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kMinExponent = 0.1F;
constexpr float kMaxExponent = 10.0F;

}  // namespace

float BrightnessExponent(float brightness) {
  const float exponent = 1.0F / (brightness / 100.0F * 0.5F + 1.0F);
  return std::max(std::min(exponent, kMaxExponent), kMinExponent);
}

RowTransform Brightness(float brightness) {
  const float exponent = BrightnessExponent(brightness);
  // A power of 1 would still cost the last bits of every value.
  if (exponent == 1.0F) return {};
  return MakeRowTransform([exponent](const RowPart& row) {
    for (float* values : {row.red, row.green, row.blue}) {
      RaiseToPower(values, row.columns, [exponent](float) { return exponent; });
    }
  });
}

}  // namespace lumvik
