// Failures inside the library: exceptions that carry a status. The exported functions turn them into
// statuses.
#ifndef LUMVIK_HOST_BASE_FAILURE_H_
#define LUMVIK_HOST_BASE_FAILURE_H_

#include <stdexcept>
#include <string>
#include <system_error>

#include "lumvik_host.h"

namespace lumvik::host {

using Status = lumvik_host_status;

class Failure : public std::runtime_error {
 public:
  // `text` is one sentence for a person, without a period: "cannot read 'a.jpg': it is a folder".
  Failure(Status status, const std::string& text) : std::runtime_error(text), status_(status) {}

  Status GetStatus() const { return status_; }

 private:
  Status status_;
};

// The status for an error of the operating system.
Status StatusOf(const std::error_code& error);

// A failed file operation: "cannot write 'a.jpg': No space left on device".
Failure FileFailure(const std::string& what, const std::string& path, const std::error_code& error);

// The error code in errno.
std::error_code LastSystemError();

// Messages of libraries may span several lines.
std::string OneLine(std::string text);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_BASE_FAILURE_H_
