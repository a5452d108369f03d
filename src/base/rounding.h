// Rounding that vectorizes on every instruction set.
#ifndef LUMVIK_BASE_ROUNDING_H_
#define LUMVIK_BASE_ROUNDING_H_

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace lumvik {

// 1.5 * 2^23 for float, 1.5 * 2^52 for double: a sum with it has no bits left for a fraction.
template <typename Real>
inline constexpr auto kRoundingShift = std::is_same_v<Real, float> ? Real{12582912} : Real{6755399441055744};

// The nearest integer, ties to even, for magnitudes up to 2^22 (float) or 2^51 (double).
template <typename Real>
Real RoundToNearest(Real value) {
  return (value + kRoundingShift<Real>)-kRoundingShift<Real>;
}

// The same for 0..65535 as an integer: the low bits of the sum.
inline uint32_t RoundToCode(float value) {
  const float shifted = value + kRoundingShift<float>;
  uint32_t bits = 0;
  std::memcpy(&bits, &shifted, sizeof(bits));
  return bits & 0xFFFF;
}

}  // namespace lumvik

#endif  // LUMVIK_BASE_ROUNDING_H_
