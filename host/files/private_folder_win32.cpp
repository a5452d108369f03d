#include <new>
#include <random>
#include <string>

#include "files/private_folder.h"

namespace lumvik::host {

// The user's folder for temporary files is private already.
PrivateFolder::PrivateFolder() {
  std::random_device random;
  do {
    path_ = std::filesystem::temp_directory_path() / ("lumvik-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(path_));  // false when it exists
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
  // The C++ library of MinGW takes any two files for the same one, and refuses to replace one by the other.
  std::filesystem::remove(name);
  std::filesystem::copy_file(target, name);
}

}  // namespace lumvik::host
