// Finds the photographs in a folder and its subfolders.
#ifndef LUMVIK_APPS_FILES_PHOTOGRAPH_WALK_H_
#define LUMVIK_APPS_FILES_PHOTOGRAPH_WALK_H_

#include <filesystem>
#include <string>
#include <vector>

namespace lumvik {

struct FoundPhotographs {
  std::vector<std::string> paths;     // sorted bytewise; each begins with the folder as given
  std::vector<std::string> failures;  // one message per folder that could not be read, sorted
};

// Whether the extension is that of an ordinary image rather than a camera RAW file.
bool IsOrdinaryImageName(const std::string& path);

// Whether a file or folder that was found, not named, is left alone: hidden ones, and folders of systems,
// network drives and catalogs, such as "@eaDir" with its thumbnails.
bool IsNoPhotograph(const std::filesystem::path& path, bool is_folder);

// Finds regular files with the extension of an ordinary image or a camera RAW file, ignoring case, except in
// what IsNoPhotograph leaves alone. Symbolic links inside the folder are not followed, which rules out cycles
// and duplicates. Throws std::runtime_error with a message for the user when `folder` itself cannot be read.
FoundPhotographs FindPhotographs(const std::string& folder);

}  // namespace lumvik

#endif  // LUMVIK_APPS_FILES_PHOTOGRAPH_WALK_H_
