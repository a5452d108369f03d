#include "develop/sidecar.h"

#include <filesystem>
#include <system_error>

namespace lumvik {

std::optional<std::string> FindSidecar(const std::string& photograph, const std::string& extension) {
  const std::filesystem::path path = std::filesystem::u8path(photograph);
  for (const std::string& stem : {path.string(), (path.parent_path() / path.stem()).string()}) {
    std::error_code ignored;  // an inaccessible file counts as found; reading it reports the reason
    if (std::filesystem::symlink_status(std::filesystem::u8path(stem + extension), ignored).type() !=
        std::filesystem::file_type::not_found) {
      return stem + extension;
    }
  }
  return std::nullopt;
}

}  // namespace lumvik
