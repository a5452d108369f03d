// `lumvik mask IN -o mask.png`: writes where the subject is.
#ifndef LUMVIK_APPS_MASK_COMMAND_H_
#define LUMVIK_APPS_MASK_COMMAND_H_

#include <CLI/App.hpp>

namespace lumvik {

// As AddDevelopCommand.
void AddMaskCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_MASK_COMMAND_H_
