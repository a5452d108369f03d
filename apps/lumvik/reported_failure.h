// How a command ends that has told of its failures already and has done the rest of its work.
#ifndef LUMVIK_APPS_REPORTED_FAILURE_H_
#define LUMVIK_APPS_REPORTED_FAILURE_H_

#include <exception>
#include <iostream>
#include <string>

namespace lumvik {

// Asks for the exit status of a failure, without another message.
class ReportedFailure : public std::exception {
 public:
  const char* what() const noexcept override { return "some files failed"; }
};

// Tells of a failure on standard error, in one line.
inline void Report(const std::string& sentence) {
  std::cerr << "lumvik: " << sentence << '\n';
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_REPORTED_FAILURE_H_
