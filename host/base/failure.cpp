#include "base/failure.h"

#include <algorithm>
#include <cerrno>

namespace lumvik::host {

Status StatusOf(const std::error_code& error) {
  const std::error_condition condition = error.default_error_condition();
  // Streams and other libraries number their errors themselves.
  if (condition.category() != std::generic_category()) return LUMVIK_HOST_IO_ERROR;
  switch (condition.value()) {
    case 0:
      return LUMVIK_HOST_OK;
    case ENOENT:
    case ENOTDIR:
      return LUMVIK_HOST_NOT_FOUND;
    case EACCES:
    case EPERM:
    case EROFS:
      return LUMVIK_HOST_ACCESS_DENIED;
    case ENOSPC:
    case EFBIG:
#ifdef EDQUOT
    case EDQUOT:
#endif
      return LUMVIK_HOST_DISK_FULL;
    case EEXIST:
      return LUMVIK_HOST_EXISTS;
    case ENOMEM:
      return LUMVIK_HOST_OUT_OF_MEMORY;
    default:
      return LUMVIK_HOST_IO_ERROR;
  }
}

Failure FileFailure(const std::string& what, const std::string& path, const std::error_code& error) {
  return {StatusOf(error), "cannot " + what + " '" + path + "': " + error.message()};
}

std::error_code LastSystemError() {
  return {errno, std::generic_category()};
}

std::string OneLine(std::string text) {
  text.erase(text.find_last_not_of(" \r\n") + 1);
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace lumvik::host
