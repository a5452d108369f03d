// Settings files: JSON with the keys of the setting table; each dot in a key is a nested object.
#ifndef LUMVIK_HOST_SETTINGS_SETTINGS_FILE_H_
#define LUMVIK_HOST_SETTINGS_SETTINGS_FILE_H_

#include <string>
#include <string_view>

#include "settings/settings.h"

namespace lumvik::host {

// The text of a settings file. ParseSettings returns exactly the same values.
std::string SettingsText(const Settings& settings);

// The values in the text of a settings file. Throws Failure with line and key of the error.
Settings ParseSettings(std::string_view text);

// Reads a settings file. Throws Failure.
Settings ReadSettings(const std::string& path);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_SETTINGS_FILE_H_
