// Reference tone curve: a master table, then one table per channel.
#ifndef LUMVIK_TESTS_REFERENCE_TONE_CURVE_H_
#define LUMVIK_TESTS_REFERENCE_TONE_CURVE_H_

#include <opencv2/core.hpp>
#include <vector>

#include "base/adjustments.h"

namespace lumvik::reference {

constexpr int kCurveTableSize = 65536;

// Entry i is the curve at i / 65535: a uniform Catmull-Rom spline through the points in their given order.
std::vector<float> BuildCurveTable(const ToneCurve& points);

void ToneCurveStage(cv::Mat& working, const Adjustments& adjustments);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_TONE_CURVE_H_
