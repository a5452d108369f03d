#include "image/base_curve.h"

#include <algorithm>
#include <cmath>

#include "base/code_scale.h"

namespace lumvik {
namespace {

// Half the second derivatives at the knots, zero at both ends. Solves the tridiagonal system by forward
// elimination and back substitution.
std::vector<float> QuadraticCoefficients(const std::vector<SplineKnot>& knots) {
  const size_t last = knots.size() - 1;
  const auto width = [&knots](size_t i) { return knots[i + 1].x - knots[i].x; };
  const auto slope = [&](size_t i) { return (knots[i + 1].y - knots[i].y) / width(i); };
  std::vector<float> upper(knots.size(), 0.0F);
  std::vector<float> right(knots.size(), 0.0F);
  for (size_t i = 1; i < last; ++i) {
    const float pivot = 2.0F * (knots[i + 1].x - knots[i - 1].x) - width(i - 1) * upper[i - 1];
    upper[i] = width(i) / pivot;
    right[i] = (3.0F * (slope(i) - slope(i - 1)) - width(i - 1) * right[i - 1]) / pivot;
  }
  std::vector<float> c(knots.size(), 0.0F);
  for (size_t i = last; i-- > 1;) c[i] = right[i] - upper[i] * c[i + 1];
  return c;
}

// The spline between knots k and k + 1, in Hermite form.
float EvaluateInterval(const std::vector<SplineKnot>& knots, const std::vector<float>& c, size_t k, float x) {
  const float h = knots[k + 1].x - knots[k].x;
  const float slope = (knots[k + 1].y - knots[k].y) / h;
  const float m0 = slope - (2.0F * c[k] + c[k + 1]) * h / 3.0F;
  const float m1 = slope + (c[k] + 2.0F * c[k + 1]) * h / 3.0F;
  const float t = (x - knots[k].x) / h;
  const float t2 = t * t;
  const float t3 = t2 * t;
  return (2.0F * t3 - 3.0F * t2 + 1.0F) * knots[k].y + (t3 - 2.0F * t2 + t) * h * m0 +
         (3.0F * t2 - 2.0F * t3) * knots[k + 1].y + (t3 - t2) * h * m1;
}

float EvaluateSpline(const std::vector<SplineKnot>& knots, const std::vector<float>& c, float x) {
  if (x <= knots.front().x) return knots.front().y;
  if (x >= knots.back().x) return knots.back().y;
  const auto right = std::lower_bound(knots.begin(), knots.end(), x,
                                      [](const SplineKnot& knot, float value) { return knot.x < value; });
  const auto k = static_cast<size_t>(right - knots.begin()) - 1;
  return std::clamp(EvaluateInterval(knots, c, k, x), 0.0F, 1.0F);
}

std::array<uint16_t, kCurveTableSize> MakeBaseCurveTable() {
  const std::vector<float> curve =
      NaturalSplineTable({{0.0F, 0.0F}, {0.2F, 0.22F}, {0.5F, 0.58F}, {0.8F, 0.88F}, {1.0F, 1.0F}});
  std::array<uint16_t, kCurveTableSize> table{};
  std::transform(curve.begin(), curve.end(), table.begin(), [](float value) {
    return static_cast<uint16_t>(std::lround(std::clamp(value, 0.0F, 1.0F) * kMaxCode));
  });
  return table;
}

}  // namespace

std::vector<float> NaturalSplineTable(const std::vector<SplineKnot>& knots) {
  const bool identity = knots.size() < 2;
  const std::vector<float> c = identity ? std::vector<float>() : QuadraticCoefficients(knots);
  std::vector<float> table(kCurveTableSize);
  for (int i = 0; i < kCurveTableSize; ++i) {
    const float x = static_cast<float>(i) / kMaxCode;
    table[static_cast<size_t>(i)] = identity ? x : EvaluateSpline(knots, c, x);
  }
  return table;
}

const std::array<uint16_t, kCurveTableSize>& BaseCurveTable() {
  static const auto kTable = MakeBaseCurveTable();
  return kTable;
}

}  // namespace lumvik
