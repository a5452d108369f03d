// The work folders of a run.
#ifndef LUMVIK_APPS_BATCH_WORK_FOLDERS_H_
#define LUMVIK_APPS_BATCH_WORK_FOLDERS_H_

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "batch/staged_output.h"
#include "batch/work_folder.h"

namespace lumvik {

// One for each target folder, from its first output to the end of the run. Targets are absolute paths.
class WorkFolders {
 public:
  // The output `id` of the run; null while another run is writing it. Throws std::system_error.
  std::unique_ptr<StagedOutput> Claim(const std::filesystem::path& target, std::size_t id);

  // The process that is writing the output; 0 if unknown.
  int ClaimantOf(const std::filesystem::path& target) const;

  // Whether the file system of the target's folder protects runs from each other.
  bool HasLocks(const std::filesystem::path& target) const;

 private:
  const WorkFolder* Find(const std::filesystem::path& target) const;

  std::map<std::string, std::unique_ptr<WorkFolder>> folders_;  // by the path of the target folder
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_WORK_FOLDERS_H_
