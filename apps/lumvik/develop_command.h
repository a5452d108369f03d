// `lumvik develop IN -o OUT`: develops one photograph and writes it as JPEG, PNG or TIFF.
#ifndef LUMVIK_APPS_DEVELOP_COMMAND_H_
#define LUMVIK_APPS_DEVELOP_COMMAND_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; it runs while `app` parses the arguments. It throws CLI::ParseError for wrong
// usage and another std::exception, whose text is a sentence for the user, for everything else.
void AddDevelopCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_COMMAND_H_
