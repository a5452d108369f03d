// `lumvik thumb IN -o OUT`: writes a small JPEG of a photograph, or the preview within a RAW file.
#ifndef LUMVIK_APPS_THUMB_COMMAND_H_
#define LUMVIK_APPS_THUMB_COMMAND_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`, to run and to fail as AddDevelopCommand says.
void AddThumbCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_THUMB_COMMAND_H_
