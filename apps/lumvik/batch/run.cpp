#include "batch/run.h"

#include <deque>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "batch/commit.h"
#include "batch/target_state.h"
#include "batch/work_folders.h"
#include "batch/worker_failure.h"
#include "batch/worker_process.h"
#include "batch/worker_report.h"
#include "files/file_paths.h"
#include "terminal/exit_status.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;
using RunClock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenClaims(200);

class Run {
 public:
  Run(const BatchWork& work, std::vector<BatchOutcome>& outcomes,
      const std::function<void(std::size_t)>& done, const std::function<void(const std::string&)>& notify)
      : work_(work),
        outcomes_(outcomes),
        done_(done),
        notify_(notify),
        workers_(work.workers, work.time_limit) {}

  std::optional<std::string> DoAll() {
    std::deque<std::size_t> waiting;
    for (std::size_t i = 0; i < outcomes_.size(); ++i) {
      if (outcomes_[i].state == BatchState::kPending) waiting.push_back(i);
    }
    std::size_t refused = 0;  // in succession
    while (!full_disk_ && !waiting.empty()) {
      if (workers_.Running() == work_.workers) {
        Finish(workers_.Wait());
        continue;
      }
      const std::size_t next = waiting.front();
      waiting.pop_front();
      if (Start(next)) {
        refused = 0;
        continue;
      }
      waiting.push_back(next);
      if (++refused < waiting.size()) continue;
      refused = 0;
      AwaitOtherRuns(waiting);
    }
    while (workers_.Running() > 0) Finish(workers_.Wait());
    return full_disk_;
  }

 private:
  struct Begun {
    std::unique_ptr<StagedOutput> output;
    RunClock::time_point time;
  };

  // False when another run is writing the output.
  bool Start(std::size_t i) {
    const BatchTask& task = work_.tasks[i];
    try {
      RequireReadable(task.input);
      MakeFolder(fs::path(task.output).parent_path());
      const fs::path target = ResolveOutput(task.output, task.input);
      std::unique_ptr<StagedOutput> output = Claim(target, i);
      if (!output) {
        other_run_ = folders_.ClaimantOf(target);
        return false;
      }
      if (!IsSettled(i, target)) StartWorker(i, std::move(output));
    } catch (const Interruption&) {
      throw;
    } catch (const std::exception& error) {
      Fail(i, error.what());
    }
    return true;
  }

  std::unique_ptr<StagedOutput> Claim(const fs::path& target, std::size_t i) {
    const std::string folder = target.parent_path().string();
    try {
      std::unique_ptr<StagedOutput> output = folders_.Claim(target, i);
      if (!folders_.HasLocks(target) && !std::exchange(warned_, true)) {
        notify_("the file system of '" + folder +
                "' has no locks; no other run should write into the folder at the same time");
      }
      return output;
    } catch (const std::system_error& error) {
      if (IsDiskFull(error.code())) full_disk_ = folder;
      throw std::runtime_error("cannot write into the folder '" + folder + "': " + error.code().message());
    }
  }

  // Whether there is nothing left to do, as another run may have written the output since it was planned.
  bool IsSettled(std::size_t i, const fs::path& target) {
    const BatchTask& task = work_.tasks[i];
    const TargetState state = StateOf(target, Expected(i));
    if (state == TargetState::kCurrent && !task.is_current) {
      outcomes_[i].state = BatchState::kSkipped;
      outcomes_[i].reason = "developed by another run";
      Done(i);
      return true;
    }
    const std::string refusal = work_.overwrite ? "" : RefusalToReplace(state, task.output);
    if (!refusal.empty()) Fail(i, refusal);
    return !refusal.empty();
  }

  MarkSource Expected(std::size_t i) const {
    return [this, i] { return work_.expected_mark(work_.tasks[i].input); };
  }

  // Waits for running workers to end while the system allows no more processes.
  void StartWorker(std::size_t i, std::unique_ptr<StagedOutput> output) {
    std::vector<std::string> arguments = {"develop"};
    arguments.insert(arguments.end(), work_.develop_options.begin(), work_.develop_options.end());
    arguments.insert(arguments.end(), {kWorkerReportOption, "--output=" + output->Path().string(), "--",
                                       work_.tasks[i].input});
    begun_[i] = {std::move(output), RunClock::now()};
    for (;;) {
      try {
        return workers_.Start(i, arguments);
      } catch (const std::system_error&) {
        if (workers_.Running() == 0) throw;
      }
      Finish(workers_.Wait());
    }
  }

  void AwaitOtherRuns(const std::deque<std::size_t>& waiting) {
    if (workers_.Running() == 0 && !std::exchange(announced_, true)) Announce(waiting);
    if (const std::optional<WorkerEnd> end = workers_.WaitFor(kBetweenClaims)) Finish(*end);
  }

  void Announce(const std::deque<std::size_t>& waiting) const {
    const fs::path folder = fs::path(work_.tasks[waiting.back()].output).parent_path();
    notify_("another run" + (other_run_ == 0 ? "" : " (process " + std::to_string(other_run_) + ")") +
            " is writing into '" + folder.string() + "'; waiting for it to finish " +
            std::to_string(waiting.size()) + (waiting.size() == 1 ? " photograph" : " photographs"));
  }

  void Finish(const WorkerEnd& end) {
    const Begun& begun = begun_.at(end.id);
    BatchOutcome& outcome = outcomes_[end.id];
    outcome.seconds = std::chrono::duration<double>(RunClock::now() - begun.time).count();
    if (!end.signal.empty() || end.status != kSuccess) return FinishFailed(end, *begun.output);
    const std::string& input = work_.tasks[end.id].input;
    const std::optional<WorkerReport> report = FindWorkerReport(end.out);
    if (!report) return Fail(end.id, "cannot develop '" + input + "': its process reported no size");
    try {
      Commit(*begun.output, work_.tasks[end.id].output, Expected(end.id), work_.overwrite);
    } catch (const std::system_error& error) {
      if (IsDiskFull(error.code())) full_disk_ = begun.output->Target().parent_path().string();
      return Fail(end.id, "cannot write '" + work_.tasks[end.id].output + "': " + error.code().message());
    } catch (const std::exception& error) {
      return Fail(end.id, error.what());
    }
    outcome.width = report->width;
    outcome.height = report->height;
    outcome.damage = report->damage;
    outcome.warnings = report->warnings;
    outcome.state = BatchState::kDeveloped;
    Done(end.id);
  }

  void FinishFailed(const WorkerEnd& end, const StagedOutput& output) {
    if (end.status == kDiskFull) full_disk_ = output.Target().parent_path().string();
    const std::string failure = FailureOf(end, work_.tasks[end.id].input, work_.time_limit);
    Fail(end.id, output.InTermsOfTarget(failure),
         end.status == kDamaged ? BatchState::kDamaged : BatchState::kFailed);
  }

  void Fail(std::size_t i, const std::string& failure, BatchState state = BatchState::kFailed) {
    outcomes_[i].state = state;
    outcomes_[i].failure = failure;
    Done(i);
  }

  void Done(std::size_t i) {
    begun_.erase(i);
    done_(i);
  }

  const BatchWork& work_;
  std::vector<BatchOutcome>& outcomes_;
  const std::function<void(std::size_t)>& done_;
  const std::function<void(const std::string&)>& notify_;
  int other_run_ = 0;  // the process that was last found to write an output; 0 if unknown
  bool announced_ = false;
  bool warned_ = false;
  std::optional<std::string> full_disk_;  // a folder on it
  // In this order: workers end, then staged outputs are removed, then work folders.
  WorkFolders folders_;
  std::map<std::size_t, Begun> begun_;
  Workers workers_;
};

}  // namespace

std::optional<std::string> RunBatch(const BatchWork& work, std::vector<BatchOutcome>& outcomes,
                                    const std::function<void(std::size_t)>& done,
                                    const std::function<void(const std::string&)>& notify) {
  return Run(work, outcomes, done, notify).DoAll();
}

}  // namespace lumvik
