// The settings of a photograph as options of a command.
#ifndef LUMVIK_APPS_ADJUSTMENT_OPTIONS_H_
#define LUMVIK_APPS_ADJUSTMENT_OPTIONS_H_

#include <CLI/App.hpp>

#include "settings.h"

namespace lumvik {

// Adds the options for every setting; `command` puts those that are given into `given`, which must outlive
// it.
void AddAdjustmentOptions(CLI::App& command, Settings& given);

}  // namespace lumvik

#endif  // LUMVIK_APPS_ADJUSTMENT_OPTIONS_H_
