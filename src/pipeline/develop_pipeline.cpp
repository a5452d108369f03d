#include "pipeline/develop_pipeline.h"

#include <cmath>

#include "pipeline/brightness.h"
#include "pipeline/contrast.h"
#include "pipeline/exposure.h"
#include "pipeline/row_kernel.h"
#include "pipeline/white_balance.h"

namespace lumvik {
namespace {

// Neither the default temperature (5500) nor the white balance's own reference (6504), deliberately.
constexpr float kNeutralTemperature = 6500.0F;
constexpr float kTemperatureTolerance = 1.0F;
constexpr float kTintTolerance = 0.1F;

// Negated so that a NaN setting is never taken for neutral.
bool WakesWhiteBalance(const Adjustments& a) {
  return !(std::fabs(a.temperature - kNeutralTemperature) < kTemperatureTolerance &&
           std::fabs(a.tint) < kTintTolerance);
}

struct Stage {
  const char* name;
  bool (*wakes)(const Adjustments&);
  RowKernel (*prepare)(const Adjustments&);
};

// In the order of execution.
constexpr Stage kStages[] = {
    {"white balance", WakesWhiteBalance,
     [](const Adjustments& a) { return WhiteBalance(a.temperature, a.tint); }},
    {"exposure", [](const Adjustments& a) { return a.exposure != 0; },
     [](const Adjustments& a) { return Exposure(a.exposure); }},
    {"brightness", [](const Adjustments& a) { return a.brightness != 0; },
     [](const Adjustments& a) { return Brightness(a.brightness); }},
    {"contrast", [](const Adjustments& a) { return a.contrast != 0; },
     [](const Adjustments& a) { return Contrast(a.contrast); }},
};

}  // namespace

void DevelopPipeline(const ImageBuffer& source, const Adjustments& adjustments, ImageBuffer& rendered) {
  if (source.empty()) return;
  std::vector<RowKernel> kernels;
  for (const Stage& stage : kStages) {
    if (!stage.wakes(adjustments)) continue;
    if (RowKernel kernel = stage.prepare(adjustments)) kernels.push_back(std::move(kernel));
  }
  ImageBuffer result(source.size(), CV_16UC4);
  RunRowKernels(source, kernels, result);
  rendered = std::move(result);
}

}  // namespace lumvik
