#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "support/process_state.h"

namespace lumvik::test {
namespace {

constexpr uid_t kNobody = 65534;

void Require(bool succeeded, const char* what) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

std::string MakePipe(const std::string& path) {
  Require(::mkfifo(path.c_str(), 0600) == 0, "mkfifo");
  return path;
}

std::string MakeSocket(const std::string& path) {
  const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof(address.sun_path) - 1);
  Require(::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0, "bind");
  ::close(fd);
  return path;
}

FileSizeLimit::FileSizeLimit(uint64_t bytes) : previous_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
  rlimit limit{};
  Require(::getrlimit(RLIMIT_FSIZE, &limit) == 0, "getrlimit");
  previous_ = limit.rlim_cur;
  limit.rlim_cur = bytes;
  Require(::setrlimit(RLIMIT_FSIZE, &limit) == 0, "setrlimit");
}

FileSizeLimit::~FileSizeLimit() {
  rlimit limit{};
  ::getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = previous_;
  ::setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, previous_handler_);
}

OrdinaryUser::OrdinaryUser() {
  if (::getuid() == 0) Require(::seteuid(kNobody) == 0, "seteuid");
}

OrdinaryUser::~OrdinaryUser() {
  if (::getuid() == 0 && ::seteuid(0) != 0) std::abort();
}

StderrCapture::StderrCapture() : previous_(::dup(STDERR_FILENO)) {
  std::string name = (std::filesystem::temp_directory_path() / "lumvik-stderr-XXXXXX").string();
  file_ = ::mkstemp(name.data());
  Require(file_ >= 0 && previous_ >= 0, name.c_str());
  ::unlink(name.c_str());
  std::fflush(stderr);
  Require(::dup2(file_, STDERR_FILENO) >= 0, "dup2");
}

StderrCapture::~StderrCapture() {
  Restore();
  ::close(file_);
}

void StderrCapture::Restore() {
  if (previous_ < 0) return;
  std::fflush(stderr);
  ::dup2(previous_, STDERR_FILENO);
  ::close(previous_);
  previous_ = -1;
}

std::string StderrCapture::Take() {
  Restore();
  std::string text(static_cast<size_t>(::lseek(file_, 0, SEEK_END)), '\0');
  Require(::pread(file_, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()), "pread");
  return text;
}

}  // namespace lumvik::test
