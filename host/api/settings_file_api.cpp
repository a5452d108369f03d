// Settings as JSON and in files.
#include <optional>
#include <string>

#include "api/arguments.h"
#include "api/guard.h"
#include "api/settings_handle.h"
#include "files/safe_file.h"
#include "lumvik_host.h"
#include "settings/settings_file.h"
#include "settings/sidecar.h"

using namespace lumvik::host;

lumvik_host_status lumvik_host_settings_to_json(lumvik_host_settings* settings, char** json) {
  return Guarded([&] {
    RequireArgument(json, "json");
    *json = LendText(SettingsText(ValuesOf(settings)));
  });
}

lumvik_host_status lumvik_host_settings_from_json(const char* json, size_t size,
                                                  lumvik_host_settings** settings) {
  return Guarded([&] {
    RequireArgument(json, "json");
    RequireArgument(settings, "settings");
    *settings = OpenSettings(ParseSettings({json, size}));
  });
}

lumvik_host_status lumvik_host_settings_read(const char* path, lumvik_host_settings** settings) {
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(settings, "settings");
    *settings = OpenSettings(ReadSettings(path));
  });
}

lumvik_host_status lumvik_host_settings_write(lumvik_host_settings* settings, const char* path,
                                              int32_t overwrite) {
  return Guarded([&] {
    RequireArgument(path, "path");
    WriteSafely(path, SettingsText(ValuesOf(settings)), overwrite != 0 ? Overwrite::kYes : Overwrite::kNo);
  });
}

lumvik_host_status lumvik_host_find_sidecar(const char* photograph, const char* extension, char** sidecar) {
  return Guarded([&] {
    RequireArgument(photograph, "photograph");
    RequireArgument(extension, "extension");
    RequireArgument(sidecar, "sidecar");
    const std::optional<std::string> found = FindSidecar(photograph, extension);
    *sidecar = found ? LendText(*found) : nullptr;
  });
}
