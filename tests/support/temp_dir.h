// A temporary folder for a test.
#ifndef LUMVIK_TESTS_SUPPORT_TEMP_DIR_H_
#define LUMVIK_TESTS_SUPPORT_TEMP_DIR_H_

#include <filesystem>
#include <random>
#include <string>
#include <system_error>

namespace lumvik::test {

// Created empty, removed with its contents.
class TempDir {
 public:
  TempDir() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("lumvik-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));  // false when it exists
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // The path of a file in it, existing or not. The name is UTF-8.
  std::string File(const std::string& name) const {
    return (path_ / std::filesystem::u8path(name)).make_preferred().string();
  }

 private:
  std::filesystem::path path_;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_TEMP_DIR_H_
