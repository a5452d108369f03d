// Failures of single files, reported while the command carries on.
#ifndef LUMVIK_APPS_TERMINAL_REPORTED_FAILURE_H_
#define LUMVIK_APPS_TERMINAL_REPORTED_FAILURE_H_

#include <exception>
#include <iostream>
#include <string>

#include "terminal/printable.h"

namespace lumvik {

// Ends the command with the exit status of a failure, without another message.
class ReportedFailure : public std::exception {
 public:
  const char* what() const noexcept override { return "some files failed"; }
};

// Prints one line to standard error.
inline void Report(const std::string& sentence) {
  std::cerr << "lumvik: " << Printable(sentence) << '\n';
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_REPORTED_FAILURE_H_
