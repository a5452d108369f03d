// Wildcard patterns that no shell has expanded.
#ifndef LUMVIK_APPS_BATCH_MATCHING_FILES_H_
#define LUMVIK_APPS_BATCH_MATCHING_FILES_H_

#include <string>
#include <vector>

namespace lumvik {

// The files and folders that match `pattern` by the shell's rules, sorted. Empty when nothing matches.
std::vector<std::string> MatchingFiles(const std::string& pattern);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_MATCHING_FILES_H_
