// Adjustments for tests.
#ifndef LUMVIK_TESTS_SUPPORT_RANDOM_ADJUSTMENTS_H_
#define LUMVIK_TESTS_SUPPORT_RANDOM_ADJUSTMENTS_H_

#include <random>

#include "base/adjustments.h"

namespace lumvik::test {

// Change nothing: the defaults except for the temperature.
Adjustments NeutralAdjustments();

// Stages with several settings, set by one number: a strength in percent or the index of a variant.
void SetToneCurves(Adjustments& adjustments, float variant);  // 0..5
void SetHslBands(Adjustments& adjustments, float strength);
void SetSplitToning(Adjustments& adjustments, float strength);
void SetSharpening(Adjustments& adjustments, float amount);
void SetGeometry(Adjustments& adjustments, float variant);  // 0..6
void SetVignette(Adjustments& adjustments, float amount);
void SetGrain(Adjustments& adjustments, float amount);

// Every setting within its slider; each stage is disabled half of the time.
Adjustments RandomAdjustments(std::mt19937& random);

// A typical edit, and moderate values for every stage.
void SetTypical(Adjustments& adjustments);
void SetEverything(Adjustments& adjustments);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_RANDOM_ADJUSTMENTS_H_
