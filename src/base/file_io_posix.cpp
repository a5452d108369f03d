#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

#include "base/file_io.h"

namespace lumvik {
namespace {

class FileDescriptor {
 public:
  explicit FileDescriptor(int fd) : fd_(fd) {}
  ~FileDescriptor() { Close(); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  bool IsOpen() const { return fd_ >= 0; }
  int Get() const { return fd_; }
  // Network and quota file systems may report a lost write only here.
  bool Close() {
    const int fd = fd_;
    fd_ = -1;
    return fd < 0 || ::close(fd) == 0;
  }

 private:
  int fd_;
};

constexpr mode_t kNewFileMode = 0666;

}  // namespace

std::filesystem::path SystemPath(const std::string& path) {
  return path;
}

std::vector<uint8_t> ReadWholeFile(const std::string& path) {
  // Without O_NONBLOCK, opening a named pipe would wait for a writer forever.
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (!file.IsOpen() || ::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  if (status.st_size > std::numeric_limits<uint32_t>::max()) return {};
  std::vector<uint8_t> bytes(static_cast<size_t>(status.st_size));
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t got = ::read(file.Get(), bytes.data() + done, bytes.size() - done);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<size_t>(got);
  }
  return bytes;
}

bool WriteWholeFile(const std::string& path, const std::vector<uint8_t>& bytes) {
  FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kNewFileMode));
  if (!file.IsOpen()) return false;
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t put = ::write(file.Get(), bytes.data() + done, bytes.size() - done);
    if (put < 0 && errno == EINTR) continue;
    if (put <= 0) return false;
    done += static_cast<size_t>(put);
  }
  return file.Close();
}

bool ReadingMayBlock(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
}

}  // namespace lumvik
