// An output that is not complete yet.
#ifndef LUMVIK_APPS_BATCH_STAGED_OUTPUT_H_
#define LUMVIK_APPS_BATCH_STAGED_OUTPUT_H_

#include <cstddef>
#include <filesystem>
#include <string>

#include "batch/lock_file.h"
#include "batch/work_folder.h"

namespace lumvik {

// The file that a worker writes, and the right to put it at its target. Both end with the object.
class StagedOutput {
 public:
  // `id` is different for the outputs of a run. Throws std::system_error.
  StagedOutput(const WorkFolder& work, std::filesystem::path target, std::size_t id, LockFile claim);
  ~StagedOutput();
  StagedOutput(const StagedOutput&) = delete;
  StagedOutput& operator=(const StagedOutput&) = delete;

  std::filesystem::path Path() const { return folder_ / target_.filename(); }
  const std::filesystem::path& Target() const { return target_; }

  // Renames the file to its target, atomically. Replacing keeps the permissions of the existing file; without
  // it, an existing file gives false. Throws std::system_error.
  bool MoveToAbsentTarget() const;
  void ReplaceTarget() const;

  // Replaces the path of the staged file in a worker's message with the target's.
  std::string InTermsOfTarget(std::string text) const;

 private:
  const std::filesystem::path target_;
  const std::filesystem::path folder_;
  const LockFile claim_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_STAGED_OUTPUT_H_
