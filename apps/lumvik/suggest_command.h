// `lumvik suggest IN`: prints what the automatic tools suggest for a photograph.
#ifndef LUMVIK_APPS_SUGGEST_COMMAND_H_
#define LUMVIK_APPS_SUGGEST_COMMAND_H_

#include <CLI/App.hpp>

namespace lumvik {

// As AddDevelopCommand.
void AddSuggestCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SUGGEST_COMMAND_H_
