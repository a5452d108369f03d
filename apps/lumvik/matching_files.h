// Names with wildcards that no shell has replaced.
#ifndef LUMVIK_APPS_MATCHING_FILES_H_
#define LUMVIK_APPS_MATCHING_FILES_H_

#include <string>
#include <vector>

namespace lumvik {

// The files and folders whose paths match `pattern` as a shell's would, sorted. None when nothing matches, or
// when there is no wildcard in it and no such file.
std::vector<std::string> MatchingFiles(const std::string& pattern);

}  // namespace lumvik

#endif  // LUMVIK_APPS_MATCHING_FILES_H_
