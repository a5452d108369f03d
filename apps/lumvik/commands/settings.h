// `lumvik settings import FILE`: converts another program's settings to a settings file.
#ifndef LUMVIK_APPS_COMMANDS_SETTINGS_H_
#define LUMVIK_APPS_COMMANDS_SETTINGS_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; see AddDevelopCommand.
void AddSettingsCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_SETTINGS_H_
