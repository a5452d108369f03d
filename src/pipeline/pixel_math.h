// Arithmetic shared by several stages.
#ifndef LUMVIK_PIPELINE_PIXEL_MATH_H_
#define LUMVIK_PIPELINE_PIXEL_MATH_H_

#include <cmath>
#include <cstdint>
#include <cstring>

#include "base/rounding.h"

namespace lumvik {

// Bounds of a clamp that the compiler must not see as constants: it then emits the two instructions of a
// clamp, where GCC 12 with AVX-512 turns constant bounds into up to seven (compare, then select). Hence the
// definitions in another file, and bounds that kernels take as arguments.
struct ClampBounds {
  float min;
  float max;
};

extern const ClampBounds kUnitBounds;      // 0..1
extern const ClampBounds kExponentBounds;  // of a normal float: -126..127

// NaN stays NaN.
inline float Clamp(float value, const ClampBounds& bounds) {
  const float floored = value < bounds.min ? bounds.min : value;
  return floored > bounds.max ? bounds.max : floored;
}

// NaN becomes the minimum.
inline float Saturate(float value, const ClampBounds& bounds) {
  const float floored = value > bounds.min ? value : bounds.min;
  return floored > bounds.max ? bounds.max : floored;
}

inline float ClampUnit(float value) {
  return Clamp(value, kUnitBounds);
}

// NaN becomes 0, as in OpenCV's thresholds.
inline float SaturateUnit(float value) {
  return Saturate(value, kUnitBounds);
}

// `condition ? yes : no` by bit masks. If one of the two is already in memory, the compiler would store the
// other in a branch, and a loop with a branch does not vectorize.
inline float Choose(bool condition, float yes, float no) {
  uint32_t yes_bits = 0;
  uint32_t no_bits = 0;
  std::memcpy(&yes_bits, &yes, sizeof(yes_bits));
  std::memcpy(&no_bits, &no, sizeof(no_bits));
  const uint32_t mask = 0U - static_cast<uint32_t>(condition);
  const uint32_t bits = (yes_bits & mask) | (no_bits & ~mask);
  float chosen = 0;
  std::memcpy(&chosen, &bits, sizeof(chosen));
  return chosen;
}

// log2 of a positive, normal number. The error is at most 2e-7 relative to max(1, |log2 value|). The mantissa
// is reduced to sqrt(1/2)..sqrt(2); the polynomial is that of logf in Moshier's Cephes library, which needs
// no division. 0 and subnormal numbers are read as if they had the hidden bit, so that 0 gives -127, as in
// OpenCV's logarithm: this is visible in a power of 0.1.
inline float FastLog2(float value) {
  constexpr int32_t kSqrtHalfBits = 0x3F3504F3;
  constexpr int32_t kMantissaBits = 23;
  constexpr float kLog2E = 1.442695041F;
  int32_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  const int32_t exponent = (bits - kSqrtHalfBits) >> kMantissaBits;
  const int32_t mantissa_bits = bits - exponent * (1 << kMantissaBits);
  float mantissa = 0;
  std::memcpy(&mantissa, &mantissa_bits, sizeof(mantissa));
  const float f = mantissa - 1.0F;
  const float f2 = f * f;
  // Two independent halves have shorter dependency chains than one polynomial.
  const float low =
      (3.3333331174e-1F - 2.4999993993e-1F * f) + f2 * (2.0000714765e-1F - 1.6668057665e-1F * f);
  const float high = (1.4249322787e-1F - 1.2420140846e-1F * f) +
                     f2 * ((1.1676998740e-1F - 1.1514610310e-1F * f) + f2 * 7.0376836292e-2F);
  const float logarithm = f - f2 * 0.5F + f * f2 * (low + f2 * f2 * high);
  return static_cast<float>(exponent) + logarithm * kLog2E;
}

// 2 to the power of `value`, for -126..127 with a relative error below 2.5e-7. Smaller values and NaN give
// less than 1.2e-38, larger ones 1.7e38.
inline float FastExp2(float value) {
  constexpr int32_t kExponentBias = 127;
  constexpr int32_t kMantissaBits = 23;
  const float bounded = Saturate(value, kExponentBounds);
  const float whole = RoundToNearest(bounded);
  const float f = bounded - whole;
  // Taylor series of 2^f on -1/2..1/2.
  const float tail = 0.00961812911F + f * (0.00133335581F + f * 0.000154035304F);
  const float fraction = 1.0F + f * (0.693147181F + f * (0.240226507F + f * (0.0555041087F + f * tail)));
  const int32_t bits = (static_cast<int32_t>(whole) + kExponentBias) * (1 << kMantissaBits);
  float power_of_two = 0;
  std::memcpy(&power_of_two, &bits, sizeof(power_of_two));
  return fraction * power_of_two;
}

// Raises the absolute value of each of `count` values to the positive power `exponent_of(value)`, as cv::pow
// does. For results in 0..1 the absolute error is below 2e-7, 1/75 of a 16-bit code; 0 counts as 2^-127. Two
// short loops, because the processor overlaps several iterations of a short loop but not of a dependency
// chain as long as both together.
template <typename ExponentOf>
void RaiseToPower(float* values, int count, const ExponentOf& exponent_of) {
  for (int i = 0; i < count; ++i) values[i] = exponent_of(values[i]) * FastLog2(std::fabs(values[i]));
  for (int i = 0; i < count; ++i) values[i] = FastExp2(values[i]);
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_PIXEL_MATH_H_
