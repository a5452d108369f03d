// Reads photographs in a child process, which contains crashes.
#ifndef LUMVIK_APPS_BATCH_ISOLATED_READING_H_
#define LUMVIK_APPS_BATCH_ISOLATED_READING_H_

#include <optional>
#include <string>
#include <vector>

namespace lumvik {

// Runs a hidden command that prints one line for each file; nothing for a file that crashed it or took too
// long. Throws Interruption.
std::vector<std::optional<std::string>> ReadIsolated(const std::string& command,
                                                     const std::vector<std::string>& files);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_ISOLATED_READING_H_
