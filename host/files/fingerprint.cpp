#include "files/fingerprint.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <filesystem>

#include "base/failure.h"
#include "files/file_reading.h"

namespace lumvik::host {
namespace {

// Each end of a RAW file has more that is its own than any two share: times, serial numbers, noise.
constexpr std::size_t kEndBytes = 1 << 16;

}  // namespace

std::uint64_t FingerprintOf(const std::string& path) {
  RequireReadable(path);
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(PathOf(path), error);
  if (error) throw FileFailure("read", path, error);
  const std::string ends = std::to_string(size) + ' ' + ReadEnds(path, kEndBytes);
  return XXH3_64bits(ends.data(), ends.size());
}

}  // namespace lumvik::host
