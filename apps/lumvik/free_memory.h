// How much memory there is to work in.
#ifndef LUMVIK_APPS_FREE_MEMORY_H_
#define LUMVIK_APPS_FREE_MEMORY_H_

#include <cstdint>
#include <filesystem>

namespace lumvik {

// The bytes that processes can take before the system swaps or kills: what it calls available, page cache
// included, within the limits of our control groups. The greatest number when neither is known. `root` is
// where /proc and /sys are found.
std::uint64_t FreeMemory(const std::filesystem::path& root = "/");

}  // namespace lumvik

#endif  // LUMVIK_APPS_FREE_MEMORY_H_
