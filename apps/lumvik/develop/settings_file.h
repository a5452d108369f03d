// Settings files: JSON with the keys of SettingRules; each dot in a key is a nested object.
#ifndef LUMVIK_APPS_DEVELOP_SETTINGS_FILE_H_
#define LUMVIK_APPS_DEVELOP_SETTINGS_FILE_H_

#include <filesystem>
#include <memory>
#include <string>

#include "develop/settings.h"
#include "develop/staged_file.h"

namespace lumvik {

inline constexpr char kSettingsExtension[] = ".json";

// Reads the settings in the file. Throws std::runtime_error with a message for the user that names line and
// key of the error.
Settings ReadSettings(const std::string& path);

// The text of a file with these settings. ReadSettings returns exactly the same values.
std::string SettingsText(const Settings& settings);

// Writes that text to a staged file for `target`. Throws std::runtime_error on failure.
std::unique_ptr<StagedFile> StageSettings(const Settings& settings, const std::filesystem::path& target);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_SETTINGS_FILE_H_
