// `lumvik hash FILE...`: prints the perceptual hash of each photograph.
#ifndef LUMVIK_APPS_COMMANDS_HASH_H_
#define LUMVIK_APPS_COMMANDS_HASH_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; see AddDevelopCommand. Also throws ReportedFailure when some of the files
// failed.
void AddHashCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_HASH_H_
