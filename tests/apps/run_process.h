// Runs programs and captures their output. One implementation per platform.
#ifndef LUMVIK_TESTS_APPS_RUN_PROCESS_H_
#define LUMVIK_TESTS_APPS_RUN_PROCESS_H_

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

namespace lumvik::test {

struct ProcessResult {
  int status = 0;  // exit status, or 128 + signal; on Windows, a crash is far above 255
  std::string out;
  std::string err;
};

// A running program. POSIX only.
class RunningProcess {
 public:
  // Starts the program `arguments[0]`, searched in PATH. Throws std::system_error on failure.
  explicit RunningProcess(const std::vector<std::string>& arguments);
  ~RunningProcess();
  RunningProcess(const RunningProcess&) = delete;
  RunningProcess& operator=(const RunningProcess&) = delete;

  pid_t id() const { return id_; }
  std::string OutSoFar() const;
  std::string ErrSoFar() const;

  // Waits for it to end. Call once.
  ProcessResult Wait();

 private:
  class Capture;
  std::unique_ptr<Capture> out_;
  std::unique_ptr<Capture> err_;
  pid_t id_ = 0;
};

// Runs a program to its end.
ProcessResult RunProcess(const std::vector<std::string>& arguments);

// Arguments that run the program without the superuser's override of file permissions.
std::vector<std::string> Unprivileged(const std::vector<std::string>& arguments);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_APPS_RUN_PROCESS_H_
