// `lumvik suggest IN`: prints the settings suggested by the automatic tools.
#ifndef LUMVIK_APPS_COMMANDS_SUGGEST_H_
#define LUMVIK_APPS_COMMANDS_SUGGEST_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; see AddDevelopCommand.
void AddSuggestCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_SUGGEST_H_
