// A folder of a test's own.
#ifndef LUMVIK_TESTS_SUPPORT_TEMP_DIR_H_
#define LUMVIK_TESTS_SUPPORT_TEMP_DIR_H_

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

namespace lumvik::test {

// Made empty, removed with all that is in it.
class TempDir {
 public:
  TempDir() {
    std::string name = (std::filesystem::temp_directory_path() / "lumvik-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
    path_ = name;
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // The path of a file in it, whether there is one or not.
  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_TEMP_DIR_H_
