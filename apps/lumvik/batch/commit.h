// Puts finished outputs at their place.
#ifndef LUMVIK_APPS_BATCH_COMMIT_H_
#define LUMVIK_APPS_BATCH_COMMIT_H_

#include <string>
#include <system_error>

#include "batch/staged_output.h"
#include "batch/target_state.h"

namespace lumvik {

// Moves the output to its target. An existing file that must not be replaced is kept, unless `overwrite`.
// Throws std::system_error, or std::runtime_error with a message that calls the target `name`.
void Commit(const StagedOutput& output, const std::string& name, const MarkSource& expected, bool overwrite);

// No space, quota or file size is left.
bool IsDiskFull(const std::error_code& error);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_COMMIT_H_
