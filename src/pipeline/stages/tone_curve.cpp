#include "pipeline/stages/tone_curve.h"

#include <algorithm>
#include <memory>

#include "base/code_scale.h"
#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

constexpr float kMinSegmentWidth = 1e-6F;

using Table = std::vector<float>;

bool IsIdentity(const ToneCurve& curve) {
  const auto is = [](const CurvePoint& point, float value) { return point.x == value && point.y == value; };
  return curve.size() < 2 || (curve.size() == 2 && is(curve[0], 0.0F) && is(curve[1], 1.0F));
}

// The spline between point j and the next at x.
float EvaluateSegment(const ToneCurve& points, size_t j, float x) {
  const size_t last = points.size() - 1;
  const float p0 = points[j == 0 ? 0 : j - 1].y;
  const float p1 = points[j].y;
  const float p2 = points[std::min(j + 1, last)].y;
  const float p3 = points[std::min(j + 2, last)].y;
  const float width = points[std::min(j + 1, last)].x - points[j].x;
  const float t = width > kMinSegmentWidth ? ClampUnit((x - points[j].x) / width) : 0.0F;
  const float t2 = t * t;
  return 0.5F * (2.0F * p1 + (p2 - p0) * t + (2.0F * p0 - 5.0F * p1 + 4.0F * p2 - p3) * t2 +
                 (3.0F * p1 - p0 - 3.0F * p2 + p3) * (t2 * t));
}

// A NaN looks up entry 0.
int Index(float value) {
  // NOLINTNEXTLINE(bugprone-incorrect-roundings): adding one half and truncating defines the index
  return static_cast<int>(SaturateUnit(value) * kMaxCode + 0.5F);
}

// One lookup in the result equals a lookup in `first`, then one in `second`.
Table Composed(const Table& first, const Table& second) {
  Table table(first.size());
  std::transform(first.begin(), first.end(), table.begin(),
                 [&second](float value) { return second[static_cast<size_t>(Index(value))]; });
  return table;
}

// Two loops, because the arithmetic vectorizes and the lookups do not.
void LookUp(float* __restrict values, int count, const float* __restrict table) {
  int indices[kMaxPart];
  for (int i = 0; i < count; ++i) indices[i] = Index(values[i]);
  for (int i = 0; i < count; ++i) values[i] = table[indices[i]];
}

}  // namespace

std::vector<float> BuildCurveTable(const ToneCurve& points) {
  Table table(kCurveTableEntries);
  size_t segment = 0;
  for (size_t i = 0; i < table.size(); ++i) {
    const float x = static_cast<float>(i) / kMaxCode;
    if (points.size() < 2) {
      table[i] = x;
      continue;
    }
    // x only grows, so the segment never moves back.
    while (segment + 2 < points.size() && !(points[segment + 1].x >= x)) ++segment;
    table[i] = ClampUnit(EvaluateSegment(points, segment, x));
  }
  return table;
}

bool HasCurve(const ToneCurves& curves) {
  return !std::all_of(curves.begin(), curves.end(), IsIdentity);
}

RowTransform ToneCurveStage(const ToneCurves& curves) {
  const Table master = BuildCurveTable(curves[kMasterCurve]);
  struct Tables {
    Table red, green, blue;
  };
  const auto tables =
      std::make_shared<const Tables>(Tables{Composed(master, BuildCurveTable(curves[kRedCurve])),
                                            Composed(master, BuildCurveTable(curves[kGreenCurve])),
                                            Composed(master, BuildCurveTable(curves[kBlueCurve]))});
  return MakeRowTransform([tables](const RowPart& row) {
    LookUp(row.red, row.columns, tables->red.data());
    LookUp(row.green, row.columns, tables->green.data());
    LookUp(row.blue, row.columns, tables->blue.data());
  });
}

}  // namespace lumvik
