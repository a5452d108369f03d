// Runs this command again in processes of their own, so that what goes wrong there stays there.
#ifndef LUMVIK_APPS_WORKER_PROCESS_H_
#define LUMVIK_APPS_WORKER_PROCESS_H_

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace lumvik {

// How a worker came to its end.
struct WorkerEnd {
  std::size_t id = 0;  // the one it was started with
  int status = 0;      // its exit status
  std::string signal;  // "signal 11, Segmentation fault" when that ended it; no exit status then
  std::string out;     // the beginnings of what it wrote on standard output and standard error
  std::string err;
};

// The user wants the command to end.
class Interruption : public std::exception {
 public:
  explicit Interruption(int status) : status_(status) {}
  const char* what() const noexcept override { return "interrupted"; }
  int Status() const { return status_; }  // for the command to exit with

 private:
  int status_;
};

// While there is an object of this class, a request to end the command (by Ctrl-C and the like) is kept for
// the next Wait, and the command has no threads.
class Workers {
 public:
  // Each of the workers gets an equal share of the processors to itself, and cannot use more threads at once
  // than these: whatever its libraries start is bound to them.
  explicit Workers(unsigned most);
  ~Workers();  // ends those that still run, and waits until they are gone
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  std::size_t Running() const;

  // Starts one more, fewer than `most` running, with these arguments behind the command's name. Throws
  // std::system_error when there can be no more processes.
  void Start(std::size_t id, const std::vector<std::string>& arguments);

  // Waits until one of those running has ended. Throws Interruption.
  WorkerEnd Wait();

 private:
  class Processes;
  std::unique_ptr<Processes> processes_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_WORKER_PROCESS_H_
