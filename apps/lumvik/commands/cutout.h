// `lumvik cutout IN -o subject.png`: develops a photograph and writes its subject on a transparent
// background.
#ifndef LUMVIK_APPS_COMMANDS_CUTOUT_H_
#define LUMVIK_APPS_COMMANDS_CUTOUT_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; see AddDevelopCommand.
void AddCutoutCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_CUTOUT_H_
