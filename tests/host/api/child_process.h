// Runs code in a forked child process.
#ifndef LUMVIK_TESTS_HOST_API_CHILD_PROCESS_H_
#define LUMVIK_TESTS_HOST_API_CHILD_PROCESS_H_

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <stdexcept>

namespace lumvik::host::test {

inline constexpr unsigned kSecondsPerChild = 300;  // a child that hangs is ended by SIGALRM

// Returns the exit code of the child, or minus the signal that ended it.
inline int ExitCodeOfChild(const std::function<int()>& body) {
  std::fflush(nullptr);  // else a child that exits writes the output a second time
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot fork");
  if (child == 0) {
    alarm(kSecondsPerChild);
    _exit(body());
  }
  int state = 0;
  if (waitpid(child, &state, 0) != child) throw std::runtime_error("cannot wait for the child");
  return WIFSIGNALED(state) ? -WTERMSIG(state) : WEXITSTATUS(state);
}

}  // namespace lumvik::host::test

#endif  // LUMVIK_TESTS_HOST_API_CHILD_PROCESS_H_
