// The memory available for work.
#ifndef LUMVIK_APPS_BATCH_FREE_MEMORY_H_
#define LUMVIK_APPS_BATCH_FREE_MEMORY_H_

#include <cstdint>
#include <filesystem>

namespace lumvik {

// The bytes that processes can allocate before the system swaps or kills: its available memory, reclaimable
// page cache included, within the limits of our control groups. UINT64_MAX when unknown. /proc and /sys are
// looked up in `root`.
std::uint64_t FreeMemory(const std::filesystem::path& root = "/");

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_FREE_MEMORY_H_
