#include "batch/commit.h"

#include <cerrno>
#include <stdexcept>

namespace lumvik {

void Commit(const StagedOutput& output, const std::string& name, const MarkSource& expected, bool overwrite) {
  for (;;) {
    const TargetState state = StateOf(output.Target(), expected);
    if (state == TargetState::kAbsent) {
      if (output.MoveToAbsentTarget()) return;
      continue;  // it appeared in the meantime
    }
    const std::string refusal = overwrite ? "" : RefusalToReplace(state, name);
    if (!refusal.empty()) throw std::runtime_error(refusal);
    return output.ReplaceTarget();
  }
}

bool IsDiskFull(const std::error_code& error) {
  return error == std::errc::no_space_on_device || error == std::errc::file_too_large ||
         error == std::error_code(EDQUOT, std::generic_category());
}

}  // namespace lumvik
