#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <new>

#include "files/memory_file.h"

namespace lumvik::host {
namespace {

bool WriteToMemory(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

MemoryFile::~MemoryFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

bool MemoryFile::StoreInMemory(std::string_view bytes) {
  const int file = ::memfd_create("lumvik", MFD_CLOEXEC);
  path_ = "/proc/self/fd/" + std::to_string(file);
  const bool is_reachable = file >= 0 && ::access(path_.c_str(), R_OK) == 0;
  if (is_reachable && WriteToMemory(file, bytes)) {
    descriptor_ = file;
    return true;
  }
  if (file >= 0) ::close(file);
  if (is_reachable) throw std::bad_alloc();
  return false;
}

}  // namespace lumvik::host
