// A file that appears complete or not at all.
#ifndef LUMVIK_APPS_STAGED_FILE_H_
#define LUMVIK_APPS_STAGED_FILE_H_

#include <filesystem>
#include <string>

namespace lumvik {

// Moves a complete file to its place, over one that may be there, whose permissions are kept. Both are in one
// file system. Throws std::runtime_error when that fails.
void MoveIntoPlace(const std::filesystem::path& complete, const std::filesystem::path& target);

// Reserves a temporary file beside the target; Commit moves it to the target in one step. Without a Commit
// the temporary is removed and the target stays as it was.
class StagedFile {
 public:
  // `ending` is that of the temporary's name, as writers go by it. Throws std::runtime_error when the folder
  // of `target` takes no file.
  StagedFile(std::filesystem::path target, const std::string& ending);
  ~StagedFile();
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;

  const std::string& TemporaryPath() const { return temporary_path_; }

  // Replaces the target, as MoveIntoPlace does.
  void Commit();

 private:
  std::filesystem::path target_;
  std::string temporary_path_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_STAGED_FILE_H_
