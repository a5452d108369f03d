// `lumvik hash FILE...`: prints a hash of how each photograph looks.
#ifndef LUMVIK_APPS_HASH_COMMAND_H_
#define LUMVIK_APPS_HASH_COMMAND_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`, to run and to fail as AddDevelopCommand says. It throws ReportedFailure when
// some of the files failed.
void AddHashCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_HASH_COMMAND_H_
