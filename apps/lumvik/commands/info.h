// `lumvik info`.
#ifndef LUMVIK_APPS_COMMANDS_INFO_H_
#define LUMVIK_APPS_COMMANDS_INFO_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`.
void AddInfoCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_INFO_H_
