// The frame of every exported function.
#ifndef LUMVIK_HOST_API_GUARD_H_
#define LUMVIK_HOST_API_GUARD_H_

#include "base/failure.h"

namespace lumvik::host {

// Sets the text of the calling thread for the exception being handled, and returns its status.
Status ReportException() noexcept;

// The text of the calling thread.
const char* ThreadText() noexcept;

// While it exists, a request to cancel the calling thread is deferred: in the middle of a call it would leave
// locks held.
class CancellationDeferral {
 public:
  CancellationDeferral() noexcept;
  ~CancellationDeferral();
  CancellationDeferral(const CancellationDeferral&) = delete;
  CancellationDeferral& operator=(const CancellationDeferral&) = delete;

 private:
  int previous_ = 0;
};

// Runs the body of an exported function.
template <typename Call>
Status Guarded(const Call& call) noexcept {
  const CancellationDeferral deferral;
  try {
    call();
    return LUMVIK_HOST_OK;
  } catch (...) {
    return ReportException();
  }
}

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_API_GUARD_H_
