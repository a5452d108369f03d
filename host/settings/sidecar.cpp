#include "settings/sidecar.h"

#include <filesystem>
#include <system_error>

#include "files/file_reading.h"

namespace lumvik::host {

std::optional<std::string> FindSidecar(const std::string& photograph, const std::string& extension) {
  const std::filesystem::path path = PathOf(photograph);
  for (const std::string& stem : {photograph, (path.parent_path() / path.stem()).u8string()}) {
    std::error_code ignored;  // an inaccessible file counts as found; reading it reports the reason
    if (std::filesystem::symlink_status(PathOf(stem + extension), ignored).type() !=
        std::filesystem::file_type::not_found) {
      return stem + extension;
    }
  }
  return std::nullopt;
}

}  // namespace lumvik::host
