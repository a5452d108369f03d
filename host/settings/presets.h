// Presets: named settings files in a folder. Each function throws Failure.
#ifndef LUMVIK_HOST_SETTINGS_PRESETS_H_
#define LUMVIK_HOST_SETTINGS_PRESETS_H_

#include <filesystem>
#include <string>
#include <vector>

#include "files/safe_file.h"
#include "settings/settings.h"

namespace lumvik::host {

// The user's own presets. The folder need not exist.
std::filesystem::path OwnPresetFolder();

// The names of the presets in a folder, sorted.
std::vector<std::string> ListPresets(const std::filesystem::path& folder);

Settings ReadPreset(const std::filesystem::path& folder, const std::string& name);

// Creates the folder if necessary.
void WritePreset(const std::filesystem::path& folder, const std::string& name, const Settings& settings,
                 Overwrite overwrite);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_PRESETS_H_
