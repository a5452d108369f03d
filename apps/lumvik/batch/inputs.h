// The input photographs of a batch.
#ifndef LUMVIK_APPS_BATCH_INPUTS_H_
#define LUMVIK_APPS_BATCH_INPUTS_H_

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace lumvik {

struct BatchInput {
  std::string path;
  std::string folder;  // replaces {folder} in output names
};

struct BatchInputs {
  std::vector<BatchInput> photographs;    // in argument order; those of a folder sorted by path
  std::set<std::string> canonical_paths;  // of the photographs
  std::vector<std::string> failures;      // one message per argument or folder that could not be read
};

// The absolute path with symbolic links resolved as far as it exists, without a trailing slash.
std::filesystem::path CanonicalPath(const std::filesystem::path& path);

// Expands the arguments: files, folders and wildcard patterns. Each photograph is listed once. An output
// folder inside an input folder is skipped, as it holds the results of earlier runs.
BatchInputs FindBatchInputs(const std::vector<std::string>& arguments, const std::string& output_folder);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_INPUTS_H_
