#include "reference/tone_curve.h"

#include <algorithm>

#include "reference/clamp.h"

namespace lumvik::reference {
namespace {

constexpr float kLastIndex = 65535.0F;

bool IsIdentity(const ToneCurve& points) {
  if (points.size() < 2) return true;
  return points.size() == 2 && points[0].x == 0 && points[0].y == 0 && points[1].x == 1 && points[1].y == 1;
}

// The first segment that ends at or beyond `u`, or else the last one.
size_t FindSegment(const ToneCurve& points, float u) {
  size_t j = 0;
  while (j + 2 < points.size() && !(points[j + 1].x >= u)) ++j;
  return j;
}

float EvaluateCurve(const ToneCurve& points, float u) {
  const size_t last = points.size() - 1;
  const size_t j = FindSegment(points, u);
  const float p0 = points[j == 0 ? 0 : j - 1].y;
  const float p1 = points[j].y;
  const float p2 = points[std::min(j + 1, last)].y;
  const float p3 = points[std::min(j + 2, last)].y;
  const float dx = points[std::min(j + 1, last)].x - points[j].x;
  const float t = dx > 1e-6F ? ClampUnit((u - points[j].x) / dx) : 0.0F;
  const float t2 = t * t;
  const float t3 = t2 * t;
  const float v = 0.5F * (2.0F * p1 + (p2 - p0) * t + (2.0F * p0 - 5.0F * p1 + 4.0F * p2 - p3) * t2 +
                          (3.0F * p1 - p0 - 3.0F * p2 + p3) * t3);
  return ClampUnit(v);
}

float LookUp(const std::vector<float>& table, float value) {
  const float position = ClampUnit(value) * kLastIndex + 0.5F;
  const bool is_number = position == position;
  return table[is_number ? static_cast<size_t>(position) : 0];
}

}  // namespace

std::vector<float> BuildCurveTable(const ToneCurve& points) {
  std::vector<float> table(kCurveTableSize);
  for (size_t i = 0; i < table.size(); ++i) {
    const float u = static_cast<float>(i) / kLastIndex;
    table[i] = points.size() < 2 ? u : EvaluateCurve(points, u);
  }
  return table;
}

void ToneCurveStage(cv::Mat& working, const Adjustments& adjustments) {
  const auto& curves = adjustments.tone_curves;
  if (std::all_of(curves.begin(), curves.end(), IsIdentity)) return;
  const std::vector<float> master = BuildCurveTable(curves[kMasterCurve]);
  const std::vector<float> channels[3] = {BuildCurveTable(curves[kRedCurve]),
                                          BuildCurveTable(curves[kGreenCurve]),
                                          BuildCurveTable(curves[kBlueCurve])};
  for (int y = 0; y < working.rows; ++y) {
    auto* row = working.ptr<cv::Vec4f>(y);
    for (int x = 0; x < working.cols; ++x) {
      for (int c = 0; c < 3; ++c) row[x][c] = LookUp(channels[c], LookUp(master, row[x][c]));
    }
  }
}

}  // namespace lumvik::reference
