// Arithmetic that several stages share.
#ifndef LUMVIK_PIPELINE_PIXEL_MATH_H_
#define LUMVIK_PIPELINE_PIXEL_MATH_H_

#include <cmath>
#include <cstdint>
#include <cstring>

#include "base/rounding.h"

namespace lumvik {

// Bounds whose values the compiler is not to know: they stand in another file. It makes the two instructions
// of a clamp that it is then; of constants GCC 12 makes up to seven with AVX-512, to compare, and to choose
// by the outcome.
extern const float kBlack;  // 0
extern const float kWhite;  // 1
extern const float kLowestPower;
extern const float kHighestPower;

// Into least..most; a NaN stays a NaN.
inline float Clamp(float value, float least, float most) {
  const float floored = value < least ? least : value;
  return floored > most ? most : floored;
}

// Into least..most; a NaN becomes `least`.
inline float Saturate(float value, float least, float most) {
  const float floored = value > least ? value : least;
  return floored > most ? most : floored;
}

// Into 0..1; a NaN stays a NaN.
inline float ClampUnit(float value) {
  return Clamp(value, kBlack, kWhite);
}

// Into 0..1; a NaN becomes 0, as it does in OpenCV's thresholds.
inline float SaturateUnit(float value) {
  return Saturate(value, kBlack, kWhite);
}

// `condition ? yes : no`, by masks: where one of the two is what memory holds already, the compiler would
// store the other in a branch, and a loop with a branch does not vectorize.
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

// log2 of a positive, normal number. Largest error 2e-7 relative to max(1, |log2 value|).
// The mantissa is brought into sqrt(1/2)..sqrt(2); the polynomial for its logarithm is that of logf in
// Moshier's Cephes library, which takes no division. 0 and subnormal numbers are read as if they had the
// hidden bit, so that 0 gives -127: OpenCV's logarithm does the same, which shows in a power of 0.1.
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
  // Two halves side by side wait less for each other than one chain.
  const float low =
      (3.3333331174e-1F - 2.4999993993e-1F * f) + f2 * (2.0000714765e-1F - 1.6668057665e-1F * f);
  const float high = (1.4249322787e-1F - 1.2420140846e-1F * f) +
                     f2 * ((1.1676998740e-1F - 1.1514610310e-1F * f) + f2 * 7.0376836292e-2F);
  const float logarithm = f - f2 * 0.5F + f * f2 * (low + f2 * f2 * high);
  return static_cast<float>(exponent) + logarithm * kLog2E;
}

// 2 to the power of `value`, for -126..127 with a relative error below 2.5e-7. Smaller values, and a NaN,
// give less than 1.2e-38, larger ones 1.7e38.
inline float FastExp2(float value) {
  constexpr int32_t kExponentBias = 127;
  constexpr int32_t kMantissaBits = 23;
  const float bounded = Saturate(value, kLowestPower, kHighestPower);
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

// Gives each of `count` values |value| to the power of `exponent_of(value)`, a positive one, as cv::pow does.
// For results in 0..1 the absolute error is below 2e-7, which is 1/75 of a 16-bit code; 0 counts as 2^-127.
// In two loops: the processor works on several vectors of a short one at a time, but does not look beyond a
// chain of operations as long as the two together.
template <typename ExponentOf>
void RaiseToPower(float* values, int count, const ExponentOf& exponent_of) {
  for (int i = 0; i < count; ++i) values[i] = exponent_of(values[i]) * FastLog2(std::fabs(values[i]));
  for (int i = 0; i < count; ++i) values[i] = FastExp2(values[i]);
}

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_PIXEL_MATH_H_
