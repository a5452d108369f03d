// A folder that only this user can enter.
#ifndef LUMVIK_HOST_FILES_PRIVATE_FOLDER_H_
#define LUMVIK_HOST_FILES_PRIVATE_FOLDER_H_

#include <filesystem>

namespace lumvik::host {

// Created empty in the folder for temporary files, removed with its contents. Throws Failure.
class PrivateFolder {
 public:
  PrivateFolder();
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// Lets `name`, which may exist, refer to the file at `target`: by a symbolic link, or by a copy where links
// need a privilege. Throws std::filesystem::filesystem_error.
void PointTo(const std::filesystem::path& name, const std::filesystem::path& target);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_PRIVATE_FOLDER_H_
