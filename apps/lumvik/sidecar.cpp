#include "sidecar.h"

#include <filesystem>
#include <system_error>

namespace lumvik {

std::optional<std::string> FindSidecar(const std::string& photograph, const std::string& ending) {
  const std::filesystem::path path = std::filesystem::u8path(photograph);
  for (const std::string& stem : {path.string(), (path.parent_path() / path.stem()).string()}) {
    std::error_code
        ignored;  // what cannot be looked at is found, and refused with its reason when it is read
    if (std::filesystem::symlink_status(std::filesystem::u8path(stem + ending), ignored).type() !=
        std::filesystem::file_type::not_found) {
      return stem + ending;
    }
  }
  return std::nullopt;
}

}  // namespace lumvik
