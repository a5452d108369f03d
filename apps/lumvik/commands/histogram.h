// `lumvik histogram IN`: develops a photograph and prints its histograms.
#ifndef LUMVIK_APPS_COMMANDS_HISTOGRAM_H_
#define LUMVIK_APPS_COMMANDS_HISTOGRAM_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; see AddDevelopCommand.
void AddHistogramCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_HISTOGRAM_H_
