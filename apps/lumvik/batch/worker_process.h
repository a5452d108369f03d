// Runs this command in child processes, which contains their crashes.
#ifndef LUMVIK_APPS_BATCH_WORKER_PROCESS_H_
#define LUMVIK_APPS_BATCH_WORKER_PROCESS_H_

#include <chrono>
#include <cstddef>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumvik {

// How a worker ended.
struct WorkerEnd {
  std::size_t id = 0;       // as passed to Start
  int status = 0;           // exit status
  std::string signal;       // "signal 11, Segmentation fault" if that ended it; there is no exit status then
  bool is_overdue = false;  // it took longer than the time limit and was killed
  std::string out;          // the first 64 KiB of standard output
  std::string err;          // and of standard error
};

// The user asked the command to end.
class Interruption : public std::exception {
 public:
  explicit Interruption(int status) : status_(status) {}
  const char* what() const noexcept override { return "interrupted"; }
  int Status() const { return status_; }  // the exit status of the command

 private:
  int status_;
};

// While an object of this class exists, a request to end the command, such as Ctrl-C, is held until the next
// Wait. The command must not have other threads, as it forks.
class Workers {
 public:
  // Divides the processors evenly among `max` workers. Each is pinned to its share, which also limits the
  // threads of its libraries. A worker that takes longer than `time_limit` is killed; 0 for no limit.
  explicit Workers(unsigned max, std::chrono::seconds time_limit = std::chrono::seconds(0));
  ~Workers();  // kills running workers and waits for them
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  std::size_t Running() const;

  // Starts a worker with these arguments; fewer than `max` may be running. Throws std::system_error when the
  // system allows no more processes.
  void Start(std::size_t id, const std::vector<std::string>& arguments);

  // Waits for a running worker to end. Throws Interruption.
  WorkerEnd Wait();

  // The same for up to `time`; also waits if none is running.
  std::optional<WorkerEnd> WaitFor(std::chrono::milliseconds time);

 private:
  class Processes;
  std::unique_ptr<Processes> processes_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_WORKER_PROCESS_H_
