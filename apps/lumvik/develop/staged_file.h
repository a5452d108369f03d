// Atomic replacement of files.
#ifndef LUMVIK_APPS_DEVELOP_STAGED_FILE_H_
#define LUMVIK_APPS_DEVELOP_STAGED_FILE_H_

#include <filesystem>
#include <string>

namespace lumvik {

// Renames a complete file to `target`. An existing target is replaced and its permissions are kept. Both must
// be on the same file system. Throws std::runtime_error on failure.
void MoveIntoPlace(const std::filesystem::path& complete, const std::filesystem::path& target);

// A temporary file next to its target; Commit renames it to the target. Without a Commit it is removed and
// the target stays untouched.
class StagedFile {
 public:
  // The temporary file gets this extension, by which writers choose the format. Throws std::runtime_error
  // when no file can be created in the target's folder.
  StagedFile(std::filesystem::path target, const std::string& extension);
  ~StagedFile();
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;

  const std::string& TemporaryPath() const { return temporary_path_; }

  void Commit();

 private:
  std::filesystem::path target_;
  std::string temporary_path_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_STAGED_FILE_H_
