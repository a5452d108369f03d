// Runs programs and collects what they say. One implementation per platform.
#ifndef LUMVIK_TESTS_APPS_RUN_PROCESS_H_
#define LUMVIK_TESTS_APPS_RUN_PROCESS_H_

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

namespace lumvik::test {

struct ProcessResult {
  int status = 0;  // the exit status; 128 + the signal's number when a signal ended the program;
                   // on Windows a crash is a status far above 255
  std::string out;
  std::string err;
};

// A program while it runs. On POSIX systems alone.
class RunningProcess {
 public:
  // Starts the program `arguments[0]`, looked up as a shell does. Throws std::system_error when it cannot be
  // started.
  explicit RunningProcess(const std::vector<std::string>& arguments);
  ~RunningProcess();
  RunningProcess(const RunningProcess&) = delete;
  RunningProcess& operator=(const RunningProcess&) = delete;

  pid_t id() const { return id_; }
  std::string OutSoFar() const;

  // Waits for its end. To be called once.
  ProcessResult Wait();

 private:
  class Capture;
  std::unique_ptr<Capture> out_;
  std::unique_ptr<Capture> err_;
  pid_t id_ = 0;
};

// Starts a program as above and waits for its end.
ProcessResult RunProcess(const std::vector<std::string>& arguments);

// The arguments that run the same program bound by file permissions, even for the superuser.
std::vector<std::string> Unprivileged(const std::vector<std::string>& arguments);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_APPS_RUN_PROCESS_H_
