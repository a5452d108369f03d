// `lumvik mask IN -o mask.png`: writes the mask of the subject.
#ifndef LUMVIK_APPS_COMMANDS_MASK_H_
#define LUMVIK_APPS_COMMANDS_MASK_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; see AddDevelopCommand.
void AddMaskCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_MASK_H_
