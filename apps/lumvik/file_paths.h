// What is asked of the paths of a command before any work is done. Each function throws
// std::runtime_error with a sentence for the user.
#ifndef LUMVIK_APPS_FILE_PATHS_H_
#define LUMVIK_APPS_FILE_PATHS_H_

#include <filesystem>
#include <string>

namespace lumvik {

// Requires `input` to be a regular file that can be opened for reading.
void RequireReadable(const std::string& input);

// The file that writing to `output` means: `output` itself or what it links to. Requires its folder to
// exist, and the file, when it exists, to be a regular, writable one other than the photograph `input`.
std::filesystem::path ResolveOutput(const std::string& output, const std::string& input);

// Creates a folder and those around it, unless they exist.
void MakeFolder(const std::filesystem::path& folder);

}  // namespace lumvik

#endif  // LUMVIK_APPS_FILE_PATHS_H_
