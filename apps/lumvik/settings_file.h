// Settings in a file: JSON with the keys of SettingRules, an object within the other for each dot of a key.
#ifndef LUMVIK_APPS_SETTINGS_FILE_H_
#define LUMVIK_APPS_SETTINGS_FILE_H_

#include <filesystem>
#include <memory>
#include <string>

#include "settings.h"
#include "staged_file.h"

namespace lumvik {

inline constexpr char kSettingsEnding[] = ".json";

// Reads the settings that the file gives. Throws std::runtime_error with a sentence for the user that names
// the line and the key of what is wrong.
Settings ReadSettings(const std::string& path);

// The text of a file that gives these settings, digit for digit as exact as ReadSettings needs to get the
// same ones back.
std::string SettingsText(const Settings& settings);

// Writes that text beside `target`, where it waits for its Commit. Throws std::runtime_error when that fails.
std::unique_ptr<StagedFile> StageSettings(const Settings& settings, const std::filesystem::path& target);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SETTINGS_FILE_H_
