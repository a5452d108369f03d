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
  std::string folder;         // replaces {folder} in output names
  std::string relative_path;  // to the folder given, so that it is the same on every machine
};

struct BatchInputs {
  std::vector<BatchInput> photographs;    // in argument order; those of a folder sorted by path
  std::set<std::string> canonical_paths;  // of the photographs
  std::vector<std::string> own_outputs;   // named as inputs, but written by this command
  std::vector<std::string> failures;      // one message per argument or folder that could not be read
};

struct BatchArguments {
  std::vector<std::string> inputs;  // files, folders and wildcard patterns
  std::vector<std::string> listed;  // files and folders
};

// The absolute path with symbolic links resolved as far as it exists, without a trailing slash.
std::filesystem::path CanonicalPath(const std::filesystem::path& path);

// Expands the arguments. Each photograph is listed once. Images in the output folder that the command wrote
// are left out, and so is what FindPhotographs leaves out, unless named.
BatchInputs FindBatchInputs(const BatchArguments& arguments, const std::string& output_folder);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_INPUTS_H_
