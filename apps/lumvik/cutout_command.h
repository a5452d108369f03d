// `lumvik cutout IN -o subject.png`: develops a photograph and writes its subject alone.
#ifndef LUMVIK_APPS_CUTOUT_COMMAND_H_
#define LUMVIK_APPS_CUTOUT_COMMAND_H_

#include <CLI/App.hpp>

namespace lumvik {

// As AddDevelopCommand.
void AddCutoutCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_CUTOUT_COMMAND_H_
