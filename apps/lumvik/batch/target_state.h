// What is at the place of an output.
#ifndef LUMVIK_APPS_BATCH_TARGET_STATE_H_
#define LUMVIK_APPS_BATCH_TARGET_STATE_H_

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "files/mark.h"

namespace lumvik {

enum class TargetState {
  kAbsent,
  kCurrent,              // developed from this photograph with these settings
  kOutdated,             // developed from this photograph with other settings
  kOfAnotherPhotograph,  // developed from another photograph
  kForeign,              // not written by this command, or changed since
};

// Makes the mark that the output will carry; nothing if that is unknown. Called only where needed, as it
// reads the photograph.
using MarkSource = std::function<std::optional<Mark>()>;

TargetState StateOf(const std::filesystem::path& target, const MarkSource& expected);

// Why a file in this state must not be replaced by `output`, as a message for the user; empty if it may.
std::string RefusalToReplace(TargetState state, const std::string& output);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_TARGET_STATE_H_
