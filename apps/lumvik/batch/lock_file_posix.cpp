#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>
#include <utility>

#include "batch/lock_file.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kMode = 0666;  // less the umask
constexpr int kNone = -1;

enum class Lock { kTaken, kHeldElsewhere, kUnsupported };

Lock TryToLock(int descriptor, const fs::path& path) {
  if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return Lock::kTaken;
  if (errno == EWOULDBLOCK) return Lock::kHeldElsewhere;
  if (errno == ENOLCK || errno == EOPNOTSUPP || errno == ENOSYS || errno == EINVAL) return Lock::kUnsupported;
  throw std::system_error(errno, std::generic_category(), path.string());
}

// False when its last owner removed the file before it was locked here.
bool IsAt(int descriptor, const fs::path& path) {
  struct stat opened = {};
  struct stat named = {};
  return fstat(descriptor, &opened) == 0 && stat(path.c_str(), &named) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

}  // namespace

std::optional<LockFile> LockFile::Take(const fs::path& path) {
  return TakeWith(path, O_CREAT);
}

std::optional<LockFile> LockFile::TakeExisting(const fs::path& path) {
  return TakeWith(path, 0);
}

std::optional<LockFile> LockFile::TakeWith(const fs::path& path, int flags) {
  for (;;) {
    const int descriptor = open(path.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | flags, kMode);
    if (descriptor < 0 && errno == ENOENT && (flags & O_CREAT) == 0) return std::nullopt;
    if (descriptor < 0) throw std::system_error(errno, std::generic_category(), path.string());
    LockFile file(path, descriptor, false);
    file.Keep();
    const Lock lock = TryToLock(descriptor, path);
    if (lock == Lock::kHeldElsewhere) return std::nullopt;
    if (!IsAt(descriptor, path)) continue;
    const std::string id = std::to_string(getpid()) + '\n';
    if (ftruncate(descriptor, 0) != 0 || write(descriptor, id.data(), id.size()) < 0) {
      const int reason = errno;
      if (lock == Lock::kTaken) unlink(path.c_str());
      throw std::system_error(reason, std::generic_category(), path.string());
    }
    file.is_exclusive_ = lock == Lock::kTaken;
    file.is_kept_ = false;
    return file;
  }
}

LockFile::LockFile(fs::path path, int descriptor, bool is_exclusive)
    : path_(std::move(path)), descriptor_(descriptor), is_exclusive_(is_exclusive) {}

LockFile::LockFile(LockFile&& other) noexcept
    : path_(std::move(other.path_)),
      descriptor_(std::exchange(other.descriptor_, kNone)),
      is_exclusive_(other.is_exclusive_),
      is_kept_(other.is_kept_) {}

LockFile::~LockFile() {
  if (descriptor_ == kNone) return;
  if (!is_kept_) unlink(path_.c_str());  // while locked, so that it is not that of a new owner
  close(descriptor_);
}

int HolderOf(const fs::path& path) {
  int id = 0;
  std::ifstream(path) >> id;
  return id;
}

}  // namespace lumvik
