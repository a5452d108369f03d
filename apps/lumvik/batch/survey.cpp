#include "batch/survey.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "batch/target_state.h"
#include "files/file_paths.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

BatchOutcome Skipped(const std::string& reason) {
  BatchOutcome outcome;
  outcome.state = BatchState::kSkipped;
  outcome.reason = reason;
  return outcome;
}

BatchOutcome Failed(const std::string& failure) {
  BatchOutcome outcome;
  outcome.state = BatchState::kFailed;
  outcome.failure = failure;
  return outcome;
}

BatchOutcome SurveyTask(BatchTask& task, const BatchWork& work, const std::set<std::string>& input_paths,
                        bool resume) {
  if (input_paths.count(CanonicalPath(task.output).string()) != 0) {
    return Failed("cannot write '" + task.output + "': it is one of the input photographs");
  }
  std::error_code error;
  if (!fs::exists(task.output, error)) return {};  // folders are made later
  try {
    const TargetState state =
        StateOf(ResolveOutput(task.output, task.input), [&] { return work.expected_mark(task.input); });
    task.is_current = state == TargetState::kCurrent;
    if (task.is_current && resume) return Skipped("already developed");
    const std::string refusal = work.overwrite ? "" : RefusalToReplace(state, task.output);
    return refusal.empty() ? BatchOutcome() : Failed(refusal);
  } catch (const std::runtime_error& failure) {
    return Failed(failure.what());
  }
}

}  // namespace

std::vector<BatchOutcome> Survey(BatchWork& work, const std::set<std::string>& input_paths, bool resume) {
  std::vector<BatchOutcome> outcomes;
  outcomes.reserve(work.tasks.size());
  for (BatchTask& task : work.tasks) outcomes.push_back(SurveyTask(task, work, input_paths, resume));
  return outcomes;
}

}  // namespace lumvik
