// Command-line options for the develop settings.
#ifndef LUMVIK_APPS_OPTIONS_ADJUSTMENTS_H_
#define LUMVIK_APPS_OPTIONS_ADJUSTMENTS_H_

#include <CLI/App.hpp>

#include "lumvik_host.hpp"

namespace lumvik {

// Adds an option for every setting. Parsing stores the values in `given`, which must outlive `command`.
void AddAdjustmentOptions(CLI::App& command, api::Settings& given);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_ADJUSTMENTS_H_
