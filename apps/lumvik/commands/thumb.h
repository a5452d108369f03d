// `lumvik thumb IN -o OUT`: writes a thumbnail of a photograph, or the preview embedded in a RAW file.
#ifndef LUMVIK_APPS_COMMANDS_THUMB_H_
#define LUMVIK_APPS_COMMANDS_THUMB_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; see AddDevelopCommand.
void AddThumbCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_THUMB_H_
