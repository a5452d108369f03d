// Tone curves: a master curve on every channel, then one curve per channel.
#ifndef LUMVIK_PIPELINE_STAGES_TONE_CURVE_H_
#define LUMVIK_PIPELINE_STAGES_TONE_CURVE_H_

#include <array>
#include <vector>

#include "base/adjustments.h"
#include "pipeline/row_transform.h"

namespace lumvik {

inline constexpr int kCurveTableEntries = 65536;

// The curve's values at i / 65535, clamped to 0..1: the uniform Catmull-Rom spline through the points' y
// values, with the end points repeated; x enters only through the position within a segment. Points are taken
// in list order, unsorted. Fewer than two points give the identity; the two points (0, 0) and (1, 1) give a
// mild S-curve.
// Catmull and Rom, A class of local interpolating splines, 1974.
std::vector<float> BuildCurveTable(const ToneCurve& points);

using ToneCurves = std::array<ToneCurve, kToneCurveCount>;

// Whether any curve is more than its identity: fewer than two points, or exactly (0, 0) and (1, 1).
bool HasCurve(const ToneCurves& curves);

// Rounds each value to 16 bits and looks it up in the master curve, then in the curve of its channel.
RowTransform ToneCurveStage(const ToneCurves& curves);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_STAGES_TONE_CURVE_H_
