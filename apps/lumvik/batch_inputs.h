// The photographs of a batch.
#ifndef LUMVIK_APPS_BATCH_INPUTS_H_
#define LUMVIK_APPS_BATCH_INPUTS_H_

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace lumvik {

struct BatchInput {
  std::string path;
  std::string folder;  // what {folder} stands for in the names of outputs
};

struct BatchInputs {
  std::vector<BatchInput> photographs;  // in the order of the arguments; those of a folder by their names
  std::set<std::string> places;         // theirs, absolute and without links
  std::vector<std::string> failures;    // a sentence for each argument or folder that could not be read
};

// Absolute and without symbolic links, as far as the path exists; without a slash at its end.
std::filesystem::path CanonicalPath(const std::filesystem::path& path);

// Goes through the arguments: files, folders and names with wildcards. A photograph that is found twice
// counts once. What lies in the output folder is not looked for in a folder around it, being the work of an
// earlier batch.
BatchInputs FindBatchInputs(const std::vector<std::string>& arguments, const std::string& output_folder);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_INPUTS_H_
