// Runs a program and collects what it says.
#ifndef LUMVIK_TESTS_APPS_RUN_PROCESS_H_
#define LUMVIK_TESTS_APPS_RUN_PROCESS_H_

#include <string>
#include <vector>

namespace lumvik::test {

struct ProcessResult {
  int status = 0;  // the exit status; 128 + the signal's number when a signal ended the program
  std::string out;
  std::string err;
};

// Runs the program `arguments[0]`, looked up as a shell does, and waits for its end. Throws
// std::system_error when it cannot be started.
ProcessResult RunProcess(const std::vector<std::string>& arguments);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_APPS_RUN_PROCESS_H_
