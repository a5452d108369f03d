// Adjustments to test with.
#ifndef LUMVIK_TESTS_SUPPORT_RANDOM_ADJUSTMENTS_H_
#define LUMVIK_TESTS_SUPPORT_RANDOM_ADJUSTMENTS_H_

#include <random>

#include "base/adjustments.h"

namespace lumvik::test {

// Settings that change nothing: the defaults, but for their temperature.
Adjustments NeutralAdjustments();

// Stages with several settings, moved by one number: a strength in percent, or the number of a variant.
void SetToneCurves(Adjustments& adjustments, float variant);  // 0..5
void SetHslBands(Adjustments& adjustments, float strength);
void SetSplitToning(Adjustments& adjustments, float strength);
void SetSharpening(Adjustments& adjustments, float amount);
void SetGeometry(Adjustments& adjustments, float variant);  // 0..6
void SetVignette(Adjustments& adjustments, float amount);
void SetGrain(Adjustments& adjustments, float amount);

// Every setting within its slider; each stage sleeps now and then.
Adjustments RandomAdjustments(std::mt19937& random);

// What a photographer sets on most photographs, and moderate values of every stage.
void SetTypical(Adjustments& adjustments);
void SetEverything(Adjustments& adjustments);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_RANDOM_ADJUSTMENTS_H_
