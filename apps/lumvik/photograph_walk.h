// The photographs in a folder and all folders within.
#ifndef LUMVIK_APPS_PHOTOGRAPH_WALK_H_
#define LUMVIK_APPS_PHOTOGRAPH_WALK_H_

#include <string>
#include <vector>

namespace lumvik {

struct FoundPhotographs {
  std::vector<std::string> paths;     // sorted by their bytes; each begins with the folder as it was given
  std::vector<std::string> failures;  // a sentence for each folder that could not be read, sorted too
};

// Whether a file of this name is taken for an ordinary image; the others are taken for camera RAW files.
bool IsOrdinaryImageName(const std::string& path);

// Finds the regular files whose names end as those of ordinary images or of camera RAW files do, in any case.
// Symbolic links within the folder are not followed: none can lead round in a circle or to a photograph's
// second name. Throws std::runtime_error with a sentence for the user when `folder` itself cannot be read.
FoundPhotographs FindPhotographs(const std::string& folder);

}  // namespace lumvik

#endif  // LUMVIK_APPS_PHOTOGRAPH_WALK_H_
