// The tone curve that every RAW decode passes through before any adjustment.
#ifndef LUMVIK_IMAGE_BASE_CURVE_H_
#define LUMVIK_IMAGE_BASE_CURVE_H_

#include <array>
#include <cstdint>
#include <vector>

namespace lumvik {

inline constexpr int kCurveTableSize = 65536;

struct SplineKnot {
  float x;
  float y;
};

// kCurveTableSize values in 0..1 of the natural cubic spline through `knots` (ascending x) at i / 65535; the
// outer values continue the first and last knot. Fewer than two knots give the identity.
// Burden and Faires, Numerical Analysis, section 3.5; evaluated in Hermite form, all in single precision.
std::vector<float> NaturalSplineTable(const std::vector<SplineKnot>& knots);

// 16-bit sample to 16-bit sample; lifts the mid-tones (one half becomes 0.58). Built on first use, then
// shared read-only by all threads.
const std::array<uint16_t, kCurveTableSize>& BaseCurveTable();

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_BASE_CURVE_H_
