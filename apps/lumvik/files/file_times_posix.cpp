#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>

#include "files/file_times.h"

namespace lumvik {
namespace {

std::runtime_error TimesFailure(const std::string& what, const std::string& path) {
  return std::runtime_error("cannot " + what + " the times of '" + path +
                            "': " + std::generic_category().message(errno));
}

}  // namespace

struct FileTimes::Times {
  std::array<timespec, 2> accessed_and_modified{};
};

FileTimes::FileTimes(const std::string& path) : times_(std::make_unique<Times>()) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) throw TimesFailure("read", path);
  times_->accessed_and_modified = {status.st_atim, status.st_mtim};
}

FileTimes::~FileTimes() = default;

void FileTimes::ApplyTo(const std::string& path) const {
  constexpr int kFollowLinks = 0;
  if (utimensat(AT_FDCWD, path.c_str(), times_->accessed_and_modified.data(), kFollowLinks) != 0) {
    throw TimesFailure("set", path);
  }
}

}  // namespace lumvik
