#include "files/fingerprint.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <algorithm>
#include <fstream>

#include "base/failure.h"
#include "files/file_reading.h"

namespace lumvik::host {
namespace {

// Each end of a RAW file has more that is its own than any two share: times, serial numbers, noise.
constexpr std::uintmax_t kEndBytes = 1 << 16;

}  // namespace

std::uint64_t FingerprintOf(const std::string& path) {
  RequireReadable(path);
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(PathOf(path), error);
  if (error) throw FileFailure("read", path, error);
  std::string ends = std::to_string(size) + ' ' + ReadBeginning(path, kEndBytes);
  if (size > kEndBytes) {
    std::ifstream file(PathOf(path), std::ios::binary);
    file.seekg(-static_cast<std::streamoff>(std::min(size - kEndBytes, kEndBytes)), std::ios::end);
    std::string tail(kEndBytes, '\0');
    file.read(tail.data(), static_cast<std::streamsize>(tail.size()));
    if (file.bad()) throw FileFailure("read", path, LastSystemError());
    ends.append(tail, 0, static_cast<std::size_t>(file.gcount()));
  }
  return XXH3_64bits(ends.data(), ends.size());
}

}  // namespace lumvik::host
