// Checks on the paths of a command, made before any work is done. Each function throws std::runtime_error
// with a message for the user.
#ifndef LUMVIK_APPS_FILES_FILE_PATHS_H_
#define LUMVIK_APPS_FILES_FILE_PATHS_H_

#include <filesystem>
#include <string>

namespace lumvik {

// Requires `input` to be a regular file that can be read.
void RequireReadable(const std::string& input);

// The file that `output` refers to, symbolic links followed. Its folder must exist; the file itself, if it
// exists, must be regular, writable and not the photograph `input`, which need not be a file.
std::filesystem::path ResolveOutput(const std::string& output, const std::string& input);

// Creates a folder and its parents, unless they exist.
void MakeFolder(const std::filesystem::path& folder);

}  // namespace lumvik

#endif  // LUMVIK_APPS_FILES_FILE_PATHS_H_
