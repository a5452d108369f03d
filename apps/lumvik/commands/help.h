// `lumvik help`.
#ifndef LUMVIK_APPS_COMMANDS_HELP_H_
#define LUMVIK_APPS_COMMANDS_HELP_H_

#include <CLI/App.hpp>

namespace lumvik {

// Prints the help of `app` or of one of its commands. Add it last.
void AddHelpCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_HELP_H_
