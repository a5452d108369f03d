#include "settings/presets.h"

#include <algorithm>
#include <system_error>

#include "base/failure.h"
#include "files/file_reading.h"
#include "settings/config_folder.h"
#include "settings/settings_file.h"
#include "settings/settings_json.h"

namespace lumvik::host {
namespace {

namespace fs = std::filesystem;

constexpr char kPresetExtension[] = ".json";

bool IsUtf8(const std::string& text) {
  try {
    return !Json(text).dump().empty();
  } catch (const Json::type_error&) {
    return false;
  }
}

// A name that is a file in the folder on every system: a colon would select another drive on Windows.
bool IsPresetName(const std::string& name) {
  return !name.empty() && name.front() != '.' && name.find_first_of("/\\:") == std::string::npos &&
         IsUtf8(name);
}

std::string PresetPath(const fs::path& folder, const std::string& name) {
  if (!IsPresetName(name)) {
    throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, "'" + name + "' is not a name of a preset");
  }
  return (folder / PathOf(name + kPresetExtension)).u8string();
}

}  // namespace

fs::path OwnPresetFolder() {
  return ConfigFolder() / "lumvik" / "presets";
}

std::vector<std::string> ListPresets(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const std::string name = entry->path().stem().u8string();
    std::error_code ignored;  // a broken link does not count
    if (entry->path().extension() == kPresetExtension && entry->is_regular_file(ignored) &&
        IsPresetName(name)) {
      names.push_back(name);
    }
  }
  if (error) throw FileFailure("list the presets in", folder.u8string(), error);
  std::sort(names.begin(), names.end());
  return names;
}

Settings ReadPreset(const fs::path& folder, const std::string& name) {
  return ReadSettings(PresetPath(folder, name));
}

void WritePreset(const fs::path& folder, const std::string& name, const Settings& settings,
                 Overwrite overwrite) {
  const std::string path = PresetPath(folder, name);
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) throw FileFailure("create the folder", folder.u8string(), error);
  WriteSafely(path, SettingsText(settings), overwrite);
}

}  // namespace lumvik::host
