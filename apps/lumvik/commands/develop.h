// `lumvik develop IN -o OUT`: develops one photograph and writes it as JPEG, PNG or TIFF.
#ifndef LUMVIK_APPS_COMMANDS_DEVELOP_H_
#define LUMVIK_APPS_COMMANDS_DEVELOP_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; it runs when `app` parses the arguments. Throws CLI::ParseError for wrong usage,
// and any other std::exception, with a message for the user, when the command fails.
void AddDevelopCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_DEVELOP_H_
