// Where the runs of `lumvik batch` keep their unfinished outputs, and agree on who writes what.
#ifndef LUMVIK_APPS_BATCH_WORK_FOLDER_H_
#define LUMVIK_APPS_BATCH_WORK_FOLDER_H_

#include <filesystem>
#include <optional>
#include <string>

#include "batch/lock_file.h"

namespace lumvik {

inline constexpr char kWorkFolderName[] = ".lumvik";

// Removes what killed runs left in the work folder, and the work folder if it is then empty.
void CleanWorkFolder(const std::filesystem::path& target_folder);

// The share of one run in the work folder of a target folder, on whose file system it is. Construction and
// destruction clean the work folder.
class WorkFolder {
 public:
  // Throws std::system_error.
  explicit WorkFolder(const std::filesystem::path& target_folder);
  ~WorkFolder();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  // For files of this run alone.
  const std::filesystem::path& Staging() const { return staging_; }

  // False where the file system has no locks, so that runs are not protected from each other.
  bool HasLocks() const { return lock_->IsExclusive(); }

  // The right to write the file of this name in the target folder; nothing while another owner has it.
  // Throws std::system_error.
  std::optional<LockFile> Claim(const std::string& file_name) const;

  // The process that has the right to write the file; 0 if unknown.
  int ClaimantOf(const std::string& file_name) const;

 private:
  std::filesystem::path ClaimPath(const std::string& file_name) const;
  bool Begin();
  void End();

  const std::filesystem::path folder_;
  std::filesystem::path staging_;
  std::optional<LockFile> lock_;  // says that the staging folder is in use
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_WORK_FOLDER_H_
