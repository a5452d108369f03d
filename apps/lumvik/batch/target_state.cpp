#include "batch/target_state.h"

#include <system_error>

#include "lumvik_host.hpp"
#include "options/overwrite.h"

namespace lumvik {
namespace {

std::optional<Mark> MarkIn(const std::filesystem::path& target) {
  try {
    return ReadMark(target.string());
  } catch (const api::Error&) {
    return std::nullopt;  // no image
  }
}

}  // namespace

TargetState StateOf(const std::filesystem::path& target, const MarkSource& expected) {
  std::error_code error;
  if (std::filesystem::symlink_status(target, error).type() == std::filesystem::file_type::not_found) {
    return TargetState::kAbsent;
  }
  const std::optional<Mark> mark = MarkIn(target);
  if (!mark) return TargetState::kForeign;
  const std::optional<Mark> wanted = expected();
  if (!wanted || mark->source != wanted->source) return TargetState::kOfAnotherPhotograph;
  return *mark == *wanted ? TargetState::kCurrent : TargetState::kOutdated;
}

std::string RefusalToReplace(TargetState state, const std::string& output) {
  if (state == TargetState::kForeign) return RefusalOfForeign(output);
  if (state == TargetState::kOfAnotherPhotograph) {
    return "'" + output + "' exists and was developed from another photograph; --overwrite replaces it";
  }
  return {};
}

}  // namespace lumvik
