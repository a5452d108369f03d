#include <fcntl.h>
#include <linux/fs.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <ctime>

#include "base/failure.h"
#include "files/safe_file.h"

namespace lumvik::host {
namespace {

std::error_code WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return LastSystemError();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return {};
}

// Blocks SIGXFSZ in this thread, to which the system sends it, and discards one that was sent meanwhile.
class FileSizeSignalBlock {
 public:
  FileSizeSignalBlock() {
    ::sigemptyset(&signal_);
    ::sigaddset(&signal_, SIGXFSZ);
    ::pthread_sigmask(SIG_BLOCK, &signal_, &before_);
  }
  ~FileSizeSignalBlock() {
    if (::sigismember(&before_, SIGXFSZ) == 1) return;
    const timespec at_once{};
    while (::sigtimedwait(&signal_, nullptr, &at_once) < 0 && errno == EINTR) {
    }
    ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  }
  FileSizeSignalBlock(const FileSizeSignalBlock&) = delete;
  FileSizeSignalBlock& operator=(const FileSizeSignalBlock&) = delete;

 private:
  sigset_t signal_{};
  sigset_t before_{};
};

}  // namespace

void WithoutFileSizeSignal(const std::function<void()>& call) {
  const FileSizeSignalBlock block;
  call();
}

std::error_code CreateNewFile(const std::filesystem::path& path) {
  constexpr mode_t kNewFileMode = 0666;
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
  if (file < 0) return LastSystemError();
  ::close(file);
  return {};
}

std::error_code FillFile(const std::filesystem::path& path, std::string_view bytes, WriteMode mode) {
  const FileSizeSignalBlock block;
  const int position = mode == WriteMode::kReplace ? O_TRUNC : O_APPEND;
  const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | position);
  if (file < 0) return LastSystemError();
  const std::error_code error = WriteAll(file, bytes);
  // A network file system may report a full disk only now.
  if (::close(file) != 0 && !error) return LastSystemError();
  return error;
}

std::error_code RenameFile(const std::filesystem::path& from, const std::filesystem::path& to,
                           bool replaces) {
  if (replaces) {
    return ::rename(from.c_str(), to.c_str()) == 0 ? std::error_code() : LastSystemError();
  }
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
  if (errno != EINVAL && errno != ENOSYS) return LastSystemError();
  // File systems without it have hard links, or at least an answer to whether the file exists.
  if (::link(from.c_str(), to.c_str()) == 0) return {};
  if (errno == EEXIST || ::access(to.c_str(), F_OK) == 0) return std::make_error_code(std::errc::file_exists);
  return ::rename(from.c_str(), to.c_str()) == 0 ? std::error_code() : LastSystemError();
}

}  // namespace lumvik::host
