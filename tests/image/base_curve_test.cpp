#include "image/base_curve.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace lumvik::test {
namespace {

constexpr double kMax = 65535.0;

const std::vector<SplineKnot> kBaseKnots = {
    {0.0F, 0.0F}, {0.2F, 0.22F}, {0.5F, 0.58F}, {0.8F, 0.88F}, {1.0F, 1.0F}};

// The natural cubic spline in double precision. The equations for its second derivatives at the knots form a
// full matrix, solved by Gauss-Jordan elimination (Press et al., Numerical Recipes, 3.3).
class PlainSpline {
 public:
  explicit PlainSpline(const std::vector<SplineKnot>& knots) {
    for (const SplineKnot& knot : knots) {
      x_.push_back(static_cast<double>(knot.x));
      y_.push_back(static_cast<double>(knot.y));
    }
    const size_t n = knots.size();
    std::vector<std::vector<double>> m(n, std::vector<double>(n + 1, 0.0));
    m[0][0] = m[n - 1][n - 1] = 1.0;
    for (size_t i = 1; i + 1 < n; ++i) {
      m[i][i - 1] = (x_[i] - x_[i - 1]) / 6.0;
      m[i][i] = (x_[i + 1] - x_[i - 1]) / 3.0;
      m[i][i + 1] = (x_[i + 1] - x_[i]) / 6.0;
      m[i][n] = (y_[i + 1] - y_[i]) / (x_[i + 1] - x_[i]) - (y_[i] - y_[i - 1]) / (x_[i] - x_[i - 1]);
    }
    for (size_t pivot = 0; pivot < n; ++pivot) {
      for (size_t row = 0; row < n; ++row) {
        const double share = m[row][pivot] / m[pivot][pivot];
        for (size_t col = 0; row != pivot && col <= n; ++col) m[row][col] -= share * m[pivot][col];
      }
    }
    for (size_t i = 0; i < n; ++i) second_.push_back(m[i][n] / m[i][i]);
  }

  double At(double x) const {
    if (x <= x_.front()) return y_.front();
    if (x >= x_.back()) return y_.back();
    size_t k = 0;
    while (x > x_[k + 1]) ++k;
    const double h = x_[k + 1] - x_[k];
    const double a = (x_[k + 1] - x) / h;
    const double b = (x - x_[k]) / h;
    const double value = a * y_[k] + b * y_[k + 1] +
                         ((a * a * a - a) * second_[k] + (b * b * b - b) * second_[k + 1]) * h * h / 6.0;
    return std::clamp(value, 0.0, 1.0);
  }

 private:
  std::vector<double> x_, y_, second_;
};

double LargestDifference(const std::vector<float>& table, const PlainSpline& spline) {
  double largest = 0;
  for (size_t i = 0; i < table.size(); ++i) {
    largest =
        std::max(largest, std::abs(static_cast<double>(table[i]) - spline.At(static_cast<double>(i) / kMax)));
  }
  return largest;
}

size_t IndexOf(double x) {
  return static_cast<size_t>(std::lround(x * kMax));
}

TEST(BaseCurve, RunsThroughItsKnots) {
  const auto& table = BaseCurveTable();
  for (const SplineKnot& knot : kBaseKnots) {
    const double x = static_cast<double>(knot.x);
    EXPECT_NEAR(table[IndexOf(x)], static_cast<double>(knot.y) * kMax, 1.0) << x;
  }
}

TEST(BaseCurve, BlackAndWhiteStay) {
  EXPECT_EQ(BaseCurveTable()[0], 0);
  EXPECT_EQ(BaseCurveTable()[65535], 65535);
}

TEST(BaseCurve, TheMiddleIsLifted) {
  EXPECT_NEAR(BaseCurveTable()[32768], 0.58 * kMax, 2.0);
}

TEST(BaseCurve, NeverFalls) {
  const auto& table = BaseCurveTable();
  EXPECT_TRUE(std::is_sorted(table.begin(), table.end()));
}

TEST(BaseCurve, IsThePlainSplineWithinOneCode) {
  const auto& table = BaseCurveTable();
  const PlainSpline spline(kBaseKnots);
  long largest = 0;
  for (size_t i = 0; i < table.size(); ++i) {
    const long expected = std::lround(spline.At(static_cast<double>(i) / kMax) * kMax);
    largest = std::max(largest, std::labs(table[i] - expected));
  }
  EXPECT_LE(largest, 1);
}

TEST(BaseCurve, IsTheRoundedSplineTable) {
  const auto& table = BaseCurveTable();
  const std::vector<float> curve = NaturalSplineTable(kBaseKnots);
  ASSERT_EQ(curve.size(), table.size());
  for (size_t i = 0; i < curve.size(); ++i) ASSERT_EQ(table[i], lroundf(curve[i] * 65535.0F)) << i;
}

TEST(BaseCurve, IsBuiltOnce) {
  EXPECT_EQ(&BaseCurveTable(), &BaseCurveTable());
}

// At an end a natural spline has no quadratic term. That of the cubic through the points at 0, h, 2h and 3h
// from the end follows from their differences.
TEST(NaturalSplineTable, HasNoCurvatureAtItsEnds) {
  const std::vector<float> table = NaturalSplineTable(kBaseKnots);
  constexpr size_t kStep = 4000;
  const double h = static_cast<double>(kStep) / kMax;
  for (const bool at_start : {true, false}) {
    const auto rise = [&](size_t steps) {
      const size_t i = at_start ? steps * kStep : 65535 - steps * kStep;
      return static_cast<double>(table[i]) - static_cast<double>(table[at_start ? 0 : 65535]);
    };
    const double quadratic = (-2.5 * rise(1) + 2.0 * rise(2) - 0.5 * rise(3)) / (h * h);
    EXPECT_NEAR(quadratic, 0.0, 1e-3) << at_start;
  }
}

TEST(NaturalSplineTable, SlopeAndCurvatureAreContinuousAtTheKnots) {
  const std::vector<float> table = NaturalSplineTable(kBaseKnots);
  constexpr size_t kStep = 1000;
  const double h = static_cast<double>(kStep) / kMax;
  for (const double knot : {0.2, 0.5, 0.8}) {
    const size_t i = IndexOf(knot);
    const auto y = [&](int steps) {
      return static_cast<double>(table[i + static_cast<size_t>(steps) * kStep]);
    };
    const double slope_right = (-11 * y(0) + 18 * y(1) - 9 * y(2) + 2 * y(3)) / (6 * h);
    const double slope_left = (11 * y(0) - 18 * y(-1) + 9 * y(-2) - 2 * y(-3)) / (6 * h);
    EXPECT_NEAR(slope_right, slope_left, 1e-3) << knot;
    const double curvature_right = (2 * y(0) - 5 * y(1) + 4 * y(2) - y(3)) / (h * h);
    const double curvature_left = (2 * y(0) - 5 * y(-1) + 4 * y(-2) - y(-3)) / (h * h);
    EXPECT_NEAR(curvature_right, curvature_left, 2e-2) << knot;
  }
}

TEST(NaturalSplineTable, IsThePlainSpline) {
  const std::vector<std::vector<SplineKnot>> curves = {
      kBaseKnots,
      {{0.0F, 0.1F}, {1.0F, 0.7F}},
      {{0.0F, 0.0F}, {0.25F, 0.4F}, {1.0F, 1.0F}},
      {{0.1F, 0.9F}, {0.15F, 0.2F}, {0.6F, 0.5F}, {0.61F, 0.52F}, {0.9F, 0.1F}},
  };
  for (const auto& knots : curves) {
    EXPECT_LT(LargestDifference(NaturalSplineTable(knots), PlainSpline(knots)), 5e-6) << knots.size();
  }
}

TEST(NaturalSplineTable, TheOuterValuesContinueTheOuterKnots) {
  const std::vector<float> table = NaturalSplineTable({{0.25F, 0.3F}, {0.5F, 0.9F}, {0.75F, 0.6F}});
  for (size_t i = 0; i <= IndexOf(0.25) - 1; ++i) ASSERT_EQ(table[i], 0.3F) << i;
  for (size_t i = IndexOf(0.75) + 1; i < table.size(); ++i) ASSERT_EQ(table[i], 0.6F) << i;
}

TEST(NaturalSplineTable, StaysInRangeBetweenKnots) {
  const std::vector<float> table =
      NaturalSplineTable({{0.0F, 0.0F}, {0.3F, 1.0F}, {0.6F, 1.0F}, {0.8F, 0.0F}, {1.0F, 0.0F}});
  const auto [least, greatest] = std::minmax_element(table.begin(), table.end());
  EXPECT_EQ(*least, 0.0F);
  EXPECT_EQ(*greatest, 1.0F);
  EXPECT_EQ(table[IndexOf(0.45)], 1.0F);  // the unclamped spline overshoots here
  EXPECT_EQ(table[IndexOf(0.9)], 0.0F);   // and falls short here
}

TEST(NaturalSplineTable, FewerThanTwoKnotsGiveTheIdentity) {
  for (const std::vector<SplineKnot>& knots : {std::vector<SplineKnot>{}, {{0.3F, 0.8F}}}) {
    const std::vector<float> table = NaturalSplineTable(knots);
    ASSERT_EQ(table.size(), size_t{kCurveTableSize});
    for (size_t i = 0; i < table.size(); ++i) ASSERT_EQ(table[i], static_cast<float>(i) / 65535.0F) << i;
  }
}

}  // namespace
}  // namespace lumvik::test
