// The user's folder for configuration.
#ifndef LUMVIK_HOST_SETTINGS_CONFIG_FOLDER_H_
#define LUMVIK_HOST_SETTINGS_CONFIG_FOLDER_H_

#include <filesystem>

namespace lumvik::host {

// On Windows %APPDATA%, elsewhere $XDG_CONFIG_HOME or ~/.config. It need not exist. Throws Failure if the
// environment does not name one.
std::filesystem::path ConfigFolder();

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_CONFIG_FOLDER_H_
