#include <cstdlib>
#include <new>
#include <string>

#include "base/failure.h"
#include "files/private_folder.h"

namespace lumvik::host {

PrivateFolder::PrivateFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "lumvik-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) throw FileFailure("create the folder", name, LastSystemError());
  path_ = name;
}

PrivateFolder::~PrivateFolder() {
  try {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  } catch (const std::bad_alloc&) {
    return;  // it is left in the folder for temporary files
  }
}

void PointTo(const std::filesystem::path& name, const std::filesystem::path& target) {
  std::filesystem::remove(name);
  std::filesystem::create_symlink(target, name);
}

}  // namespace lumvik::host
