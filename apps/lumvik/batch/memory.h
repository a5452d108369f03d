// How many photographs can be developed at once without running out of memory.
#ifndef LUMVIK_APPS_BATCH_MEMORY_H_
#define LUMVIK_APPS_BATCH_MEMORY_H_

#include <cstdint>
#include <string>
#include <vector>

namespace lumvik {

// The peak memory, in bytes, of developing a photograph of this size.
std::uint64_t MemoryToDevelop(std::uint64_t width, std::uint64_t height, bool is_ordinary_image);

// The same for each photograph, from the image size in its header.
std::vector<std::uint64_t> EstimateMemory(const std::vector<std::string>& photographs);

// The number of workers, between 1 and `wanted`, that stays within `free` bytes whichever photographs they
// process at the same time.
unsigned WorkersThatFit(std::vector<std::uint64_t> estimates, unsigned wanted, std::uint64_t free);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_MEMORY_H_
