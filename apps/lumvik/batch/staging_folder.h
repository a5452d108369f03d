// Where a worker writes until its output is complete.
#ifndef LUMVIK_APPS_BATCH_STAGING_FOLDER_H_
#define LUMVIK_APPS_BATCH_STAGING_FOLDER_H_

#include <filesystem>
#include <string>

namespace lumvik {

// A folder next to the target for the files of a worker, removed with its contents however the worker ended.
// The name is derived from the target's, so that leftovers of a killed batch are found and removed.
class StagingFolder {
 public:
  // Throws std::runtime_error when the folder cannot be created.
  explicit StagingFolder(std::filesystem::path target);
  ~StagingFolder();
  StagingFolder(const StagingFolder&) = delete;
  StagingFolder& operator=(const StagingFolder&) = delete;

  std::string StagedPath() const;

  // Renames the staged file to the target. An existing target is replaced and its permissions are kept.
  // Throws std::runtime_error on failure.
  void Commit() const;

  // Replaces the staged path in a worker's message with the target's.
  std::string InTermsOfTarget(std::string text) const;

 private:
  std::filesystem::path Folder() const;

  std::filesystem::path target_;
  std::string name_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_STAGING_FOLDER_H_
