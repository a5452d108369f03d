// Failures of single files, reported while the command carries on.
#ifndef LUMVIK_APPS_TERMINAL_REPORTED_FAILURE_H_
#define LUMVIK_APPS_TERMINAL_REPORTED_FAILURE_H_

#include <exception>
#include <iostream>
#include <string>

#include "terminal/exit_status.h"
#include "terminal/printable.h"

namespace lumvik {

// Ends the command with the exit status, without another message.
class ReportedFailure : public std::exception {
 public:
  explicit ReportedFailure(ExitStatus status = kFailure) : status_(status) {}
  const char* what() const noexcept override { return "some files failed"; }
  ExitStatus Status() const { return status_; }

 private:
  ExitStatus status_;
};

// Prints one line to standard error.
inline void Report(const std::string& sentence) {
  std::cerr << "lumvik: " << Printable(sentence) << '\n';
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_REPORTED_FAILURE_H_
