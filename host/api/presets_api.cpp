// Presets.
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "api/arguments.h"
#include "api/guard.h"
#include "api/settings_handle.h"
#include "files/file_reading.h"
#include "lumvik_host.h"
#include "settings/json_writer.h"
#include "settings/presets.h"

namespace lumvik::host {
namespace {

std::filesystem::path PresetFolderOf(const char* folder) {
  return folder == nullptr ? OwnPresetFolder() : PathOf(folder);
}

}  // namespace
}  // namespace lumvik::host

using namespace lumvik::host;

lumvik_host_status lumvik_host_list_presets(const char* folder, char** names) {
  return Guarded([&] {
    RequireArgument(names, "names");
    const std::filesystem::path path = PresetFolderOf(folder);
    std::error_code ignored;  // listing an inaccessible folder reports the reason
    const bool is_missing = folder == nullptr && std::filesystem::status(path, ignored).type() ==
                                                     std::filesystem::file_type::not_found;
    std::string list = "[";
    for (const std::string& name : is_missing ? std::vector<std::string>() : ListPresets(path)) {
      list += (list.size() > 1 ? "," : "") + JsonText(name);
    }
    *names = LendText(list + ']');
  });
}

lumvik_host_status lumvik_host_read_preset(const char* folder, const char* name,
                                           lumvik_host_settings** settings) {
  return Guarded([&] {
    RequireArgument(name, "name");
    RequireArgument(settings, "settings");
    *settings = OpenSettings(ReadPreset(PresetFolderOf(folder), name));
  });
}

lumvik_host_status lumvik_host_write_preset(const char* folder, const char* name,
                                            lumvik_host_settings* settings, int32_t overwrite) {
  return Guarded([&] {
    RequireArgument(name, "name");
    WritePreset(PresetFolderOf(folder), name, ValuesOf(settings),
                overwrite != 0 ? Overwrite::kYes : Overwrite::kNo);
  });
}
