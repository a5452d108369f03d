// The adjustments of a photograph as options of a command.
#ifndef LUMVIK_APPS_ADJUSTMENT_OPTIONS_H_
#define LUMVIK_APPS_ADJUSTMENT_OPTIONS_H_

#include <CLI/App.hpp>
#include <optional>
#include <vector>

#include "lumvik.h"

namespace lumvik {

class AdjustmentOptions {
 public:
  // Adds one option for each adjustment; `command` writes into this object, which must outlive it.
  void AddTo(CLI::App& command);

  // Sets the adjustments that were given and leaves the others as the engine has them.
  void Apply(EngineContext* context) const;

 private:
  std::vector<std::optional<float>> values_;  // in the order of the table of adjustments
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_ADJUSTMENT_OPTIONS_H_
