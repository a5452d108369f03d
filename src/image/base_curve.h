// The tone curve applied to every decoded RAW image before any adjustment.
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

// kCurveTableSize values in 0..1: the natural cubic spline through `knots` (ascending x) at i / 65535,
// constant outside the knots. Fewer than two knots give the identity. Burden and Faires, Numerical Analysis,
// section 3.5; evaluated in Hermite form in single precision.
std::vector<float> NaturalSplineTable(const std::vector<SplineKnot>& knots);

// Maps 16-bit samples to 16-bit samples and lifts the midtones (0.5 becomes 0.58). Thread-safe.
const std::array<uint16_t, kCurveTableSize>& BaseCurveTable();

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_BASE_CURVE_H_
