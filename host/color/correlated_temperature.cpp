#include "color/correlated_temperature.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace lumvik::host {
namespace {

constexpr double kMired = 1e6;
constexpr double kTintScale = 3000;

// A line of constant correlated color temperature in the CIE 1960 UCS.
struct Isotherm {
  double mired;
  double u;  // on the Planckian locus
  double v;
  double slope;
};

// With u at 325 mired corrected from the misprint 0.24702.
constexpr Isotherm kIsotherms[] = {
    {0, 0.18006, 0.26352, -0.24341},   {10, 0.18066, 0.26589, -0.25479},  {20, 0.18133, 0.26846, -0.26876},
    {30, 0.18208, 0.27119, -0.28539},  {40, 0.18293, 0.27407, -0.30470},  {50, 0.18388, 0.27709, -0.32675},
    {60, 0.18494, 0.28021, -0.35156},  {70, 0.18611, 0.28342, -0.37915},  {80, 0.18740, 0.28668, -0.40955},
    {90, 0.18880, 0.28997, -0.44278},  {100, 0.19032, 0.29326, -0.47888}, {125, 0.19462, 0.30141, -0.58204},
    {150, 0.19962, 0.30921, -0.70471}, {175, 0.20525, 0.31647, -0.84901}, {200, 0.21142, 0.32312, -1.0182},
    {225, 0.21807, 0.32909, -1.2168},  {250, 0.22511, 0.33439, -1.4512},  {275, 0.23247, 0.33904, -1.7298},
    {300, 0.24010, 0.34308, -2.0637},  {325, 0.24792, 0.34655, -2.4681},  {350, 0.25591, 0.34951, -2.9641},
    {375, 0.26400, 0.35200, -3.5814},  {400, 0.27218, 0.35407, -4.3633},  {425, 0.28039, 0.35577, -5.3762},
    {450, 0.28863, 0.35714, -6.7262},  {475, 0.29685, 0.35823, -8.5955},  {500, 0.30505, 0.35907, -11.324},
    {525, 0.31320, 0.35968, -15.628},  {550, 0.32129, 0.36011, -23.325},  {575, 0.32931, 0.36038, -40.770},
    {600, 0.33724, 0.36051, -116.45},
};

// The distance of a point from an isotherm, positive on the side of lower temperatures.
double DistanceFrom(const Isotherm& line, double u, double v) {
  return ((u - line.u) * -line.slope + (v - line.v)) / std::hypot(1, line.slope);
}

// Where the point lies between two isotherms, which it must.
WhitePoint Between(const Isotherm& hot, const Isotherm& cold, double u, double v) {
  const double from_hot = DistanceFrom(hot, u, v);
  const double from_cold = -DistanceFrom(cold, u, v);
  const double share = from_hot / (from_hot + from_cold);
  const double locus_u = hot.u + share * (cold.u - hot.u);
  const double locus_v = hot.v + share * (cold.v - hot.v);
  const double distance = std::hypot(u - locus_u, v - locus_v);
  return {kMired / (hot.mired + share * (cold.mired - hot.mired)),
          kTintScale * std::copysign(distance, v - locus_v)};
}

double Determinant(const ColorMatrix& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

// Solves matrix * x = values by Cramer's rule; NaN or infinite for a singular matrix.
std::array<double, 3> Solved(const ColorMatrix& matrix, const std::array<double, 3>& values) {
  std::array<double, 3> solution{};
  for (std::size_t column = 0; column < solution.size(); ++column) {
    ColorMatrix replaced = matrix;
    for (std::size_t row = 0; row < values.size(); ++row) replaced[row][column] = values[row];
    solution[column] = Determinant(replaced) / Determinant(matrix);
  }
  return solution;
}

}  // namespace

WhitePoint WhitePointOf(const std::array<double, 3>& xyz) {
  const auto [x, y, z] = xyz;
  const double sum = x + 15 * y + 3 * z;
  if (!(x > 0 && y > 0 && z >= 0 && std::isfinite(sum))) return {};
  const double u = 4 * x / sum;
  const double v = 6 * y / sum;
  const auto* const cold = std::find_if(std::begin(kIsotherms), std::end(kIsotherms),
                                        [&](const Isotherm& line) { return DistanceFrom(line, u, v) < 0; });
  if (cold == std::begin(kIsotherms) || cold == std::end(kIsotherms)) return {};
  return Between(*std::prev(cold), *cold, u, v);
}

WhitePoint WhitePointOfCamera(const ColorMatrix& matrix, const std::array<double, 3>& multipliers) {
  std::array<double, 3> neutral{};
  for (std::size_t i = 0; i < neutral.size(); ++i) {
    if (!(multipliers[i] > 0)) return {};
    neutral[i] = 1 / multipliers[i];
  }
  return WhitePointOf(Solved(matrix, neutral));
}

}  // namespace lumvik::host
