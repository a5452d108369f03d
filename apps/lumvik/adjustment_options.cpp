#include "adjustment_options.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <iterator>

#include "in_range.h"

namespace lumvik {
namespace {

struct Adjustment {
  const char* name;
  void (*set)(EngineContext*, float);
  float lowest;
  float highest;
  const char* unit;
  const char* help;
};

constexpr Adjustment kAdjustments[] = {
    {"--exposure", lumvik_set_exposure, -10, 10, "STOPS", "Darken or brighten by powers of two"},
    {"--brightness", lumvik_set_brightness, -100, 100, "PERCENT", "Darken or brighten the mid-tones"},
    {"--contrast", lumvik_set_contrast, -100, 100, "PERCENT", "Flatten or steepen the tones around mid-grey"},
    {"--temperature", lumvik_set_temperature, 1667, 25000, "KELVIN",
     "Colour temperature; higher is warmer, 6500 with tint 0 keeps the colours (default 5500)"},
    {"--tint", lumvik_set_tint, -150, 150, "TINT", "Shift towards green (below 0) or magenta (above 0)"},
};

}  // namespace

void AdjustmentOptions::AddTo(CLI::App& command) {
  values_.resize(std::size(kAdjustments));
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const Adjustment& adjustment = kAdjustments[i];
    command.add_option(adjustment.name, values_[i], adjustment.help)
        ->type_name(adjustment.unit)
        ->check(InRange(adjustment.lowest, adjustment.highest));
  }
}

void AdjustmentOptions::Apply(EngineContext* context) const {
  for (std::size_t i = 0; i < values_.size(); ++i) {
    if (values_[i]) kAdjustments[i].set(context, *values_[i]);
  }
}

}  // namespace lumvik
