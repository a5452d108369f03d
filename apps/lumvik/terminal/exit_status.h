// The exit statuses of the command.
#ifndef LUMVIK_APPS_TERMINAL_EXIT_STATUS_H_
#define LUMVIK_APPS_TERMINAL_EXIT_STATUS_H_

#include "lumvik_host.hpp"

namespace lumvik {

enum ExitStatus { kSuccess = 0, kFailure = 1, kUsage = 2, kDamaged = 3, kDiskFull = 4 };

inline ExitStatus ExitStatusOf(const api::Error& error) {
  switch (error.status()) {
    case LUMVIK_HOST_DAMAGED:
      return kDamaged;
    case LUMVIK_HOST_DISK_FULL:
      return kDiskFull;
    default:
      return kFailure;
  }
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_EXIT_STATUS_H_
