#include "batch/run.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "batch/worker_process.h"
#include "develop/staged_file.h"
#include "files/file_paths.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr char kMessageStart[] = "lumvik: ";

// A folder next to the target for the files of a worker, removed with its contents however the worker ended.
// The name is derived from the target's, so that leftovers of a killed batch are found and removed.
class StagingFolder {
 public:
  explicit StagingFolder(fs::path target) : target_(std::move(target)) {
    std::ostringstream name;
    name << ".lumvik-" << std::hex << std::hash<std::string>()(target_.filename().string());
    name_ = name.str();
    std::error_code error;
    fs::remove_all(Folder(), error);
    if (!error) fs::create_directory(Folder(), error);
    if (error) {
      throw std::runtime_error("cannot write into the folder '" + target_.parent_path().string() +
                               "': " + error.message());
    }
  }
  ~StagingFolder() {
    std::error_code ignored;
    fs::remove_all(Folder(), ignored);
  }
  StagingFolder(const StagingFolder&) = delete;
  StagingFolder& operator=(const StagingFolder&) = delete;

  std::string StagedPath() const { return (Folder() / target_.filename()).string(); }
  void Commit() const { MoveIntoPlace(StagedPath(), target_); }

  // Replaces the staged path in a worker's message with the target's.
  std::string InTermsOfTarget(std::string text) const {
    const std::string step = name_ + '/';
    const std::string end = '/' + name_;
    for (const std::string& part : {step, end}) {
      for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part)) {
        text.erase(at, part.size());
      }
    }
    return text;
  }

 private:
  fs::path Folder() const { return target_.parent_path() / name_; }

  fs::path target_;
  std::string name_;
};

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
      arguments.insert(arguments.end(), {"--output=" + staging->StagedPath(), "--", task.input});
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
    const std::size_t size = begun.staging->StagedPath().size();  // "name 2000x1333", followed by other lines
    if (size < end.out.size()) {
      std::sscanf(end.out.c_str() + size, "%dx%d", &outcome.width, &outcome.height);
    }
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
