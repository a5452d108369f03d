// Passes options on to another run of this command.
#ifndef LUMVIK_APPS_OPTIONS_PASSED_OPTIONS_H_
#define LUMVIK_APPS_OPTIONS_PASSED_OPTIONS_H_

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace lumvik {

// The arguments that repeat those of the options that were given.
std::vector<std::string> PassedOptions(const std::vector<const CLI::Option*>& options);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_PASSED_OPTIONS_H_
