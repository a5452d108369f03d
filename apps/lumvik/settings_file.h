// Settings in a file: JSON with the keys of SettingRules, an object within the other for each dot of a key.
#ifndef LUMVIK_APPS_SETTINGS_FILE_H_
#define LUMVIK_APPS_SETTINGS_FILE_H_

#include <string>

#include "settings.h"

namespace lumvik {

// Reads the settings that the file gives. Throws std::runtime_error with a sentence for the user that names
// the line and the key of what is wrong.
Settings ReadSettings(const std::string& path);

// Writes settings for every key, digit for digit as exact as ReadSettings needs to get the same ones back.
// Throws std::system_error when that fails.
void WriteSettings(const Settings& complete, const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SETTINGS_FILE_H_
