// Command-line options for the develop settings.
#ifndef LUMVIK_APPS_ADJUSTMENT_OPTIONS_H_
#define LUMVIK_APPS_ADJUSTMENT_OPTIONS_H_

#include <CLI/App.hpp>

#include "settings.h"

namespace lumvik {

// Adds an option for every setting. Parsing stores the values in `given`, which must outlive `command`.
void AddAdjustmentOptions(CLI::App& command, Settings& given);

}  // namespace lumvik

#endif  // LUMVIK_APPS_ADJUSTMENT_OPTIONS_H_
