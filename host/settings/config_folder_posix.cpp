#include <cstdlib>

#include "base/failure.h"
#include "settings/config_folder.h"

namespace lumvik::host {
namespace {

// The XDG base directory specification: relative paths are ignored.
std::filesystem::path FolderIn(const char* variable) {
  const char* value = std::getenv(variable);  // NOLINT(concurrency-mt-unsafe): nothing here changes it
  const std::filesystem::path folder = value == nullptr ? "" : value;
  return folder.is_absolute() ? folder : "";
}

}  // namespace

std::filesystem::path ConfigFolder() {
  std::filesystem::path config = FolderIn("XDG_CONFIG_HOME");
  if (!config.empty()) return config;
  const std::filesystem::path home = FolderIn("HOME");
  if (home.empty()) {
    throw Failure(LUMVIK_HOST_NOT_FOUND, "there is no folder for configuration: HOME is not set");
  }
  return home / ".config";
}

}  // namespace lumvik::host
