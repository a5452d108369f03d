#include "batch/run.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "batch/staging_folder.h"
#include "batch/worker_process.h"
#include "batch/worker_report.h"
#include "files/file_paths.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr char kMessageStart[] = "lumvik: ";

// The worker's error message; libraries may have printed other lines.
std::string FailureOf(const WorkerEnd& end, const std::string& input) {
  const std::string failure = "cannot develop '" + input + "': ";
  if (!end.signal.empty()) return failure + "its process was killed by " + end.signal;
  std::istringstream lines(end.err);
  std::string last;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind(kMessageStart, 0) == 0) return line.substr(sizeof kMessageStart - 1);
    if (!line.empty()) last = line;
  }
  return failure + (last.empty() ? "its process exited with status " + std::to_string(end.status) : last);
}

class Run {
 public:
  Run(const BatchWork& work, std::vector<BatchOutcome>& outcomes,
      const std::function<void(std::size_t)>& done)
      : work_(work), outcomes_(outcomes), done_(done), workers_(work.workers) {}

  void DoAll() {
    for (std::size_t i = 0; i < work_.tasks.size(); ++i) {
      if (outcomes_[i].state != BatchState::kPending) continue;
      while (workers_.Running() == work_.workers) Finish(workers_.Wait());
      Start(i);
    }
    while (workers_.Running() > 0) Finish(workers_.Wait());
  }

 private:
  struct Begun {
    std::unique_ptr<StagingFolder> staging;
    Clock::time_point time;
  };

  void Start(std::size_t i) {
    const BatchTask& task = work_.tasks[i];
    try {
      RequireReadable(task.input);
      MakeFolder(fs::path(task.output).parent_path());
      auto staging = std::make_unique<StagingFolder>(ResolveOutput(task.output, task.input));
      std::vector<std::string> arguments = {"develop"};
      arguments.insert(arguments.end(), work_.develop_options.begin(), work_.develop_options.end());
      arguments.insert(arguments.end(),
                       {kWorkerReportOption, "--output=" + staging->StagedPath(), "--", task.input});
      begun_[i] = {std::move(staging), Clock::now()};
      StartWorker(i, arguments);
    } catch (const std::exception& error) {
      Fail(i, error.what());
    }
  }

  // Waits for running workers to end while the system allows no more processes.
  void StartWorker(std::size_t i, const std::vector<std::string>& arguments) {
    for (;;) {
      try {
        return workers_.Start(i, arguments);
      } catch (const std::system_error&) {
        if (workers_.Running() == 0) throw;
      }
      Finish(workers_.Wait());
    }
  }

  void Finish(const WorkerEnd& end) {
    const Begun& begun = begun_.at(end.id);
    const std::string& input = work_.tasks[end.id].input;
    BatchOutcome& outcome = outcomes_[end.id];
    outcome.seconds = std::chrono::duration<double>(Clock::now() - begun.time).count();
    if (!end.signal.empty() || end.status != 0) {
      return Fail(end.id, begun.staging->InTermsOfTarget(FailureOf(end, input)));
    }
    try {
      begun.staging->Commit();
    } catch (const std::exception& error) {
      return Fail(end.id, error.what());
    }
    const std::optional<WorkerReport> report = FindWorkerReport(end.out);
    if (!report) return Fail(end.id, "cannot develop '" + input + "': its process reported no size");
    outcome.width = report->width;
    outcome.height = report->height;
    outcome.state = BatchState::kDeveloped;
    Done(end.id);
  }

  void Fail(std::size_t i, const std::string& failure) {
    outcomes_[i].state = BatchState::kFailed;
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
  std::map<std::size_t, Begun> begun_;
  Workers workers_;  // declared last: workers end before their staging folders are removed
};

}  // namespace

void RunBatch(const BatchWork& work, std::vector<BatchOutcome>& outcomes,
              const std::function<void(std::size_t)>& done) {
  Run(work, outcomes, done).DoAll();
}

}  // namespace lumvik
