// How many photographs fit into memory at once.
#ifndef LUMVIK_APPS_BATCH_MEMORY_H_
#define LUMVIK_APPS_BATCH_MEMORY_H_

#include <cstdint>
#include <string>
#include <vector>

namespace lumvik {

// The most bytes that developing a photograph with so many pixels takes.
std::uint64_t MemoryToDevelop(std::uint64_t width, std::uint64_t height, bool is_ordinary_image);

// The same for each photograph, by the headers of the files.
std::vector<std::uint64_t> EstimateMemory(const std::vector<std::string>& photographs);

// How many workers, at most `wanted` and at least one, stay within `free` bytes whichever of the photographs
// they have at the same time.
unsigned WorkersThatFit(std::vector<std::uint64_t> estimates, unsigned wanted, std::uint64_t free);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_MEMORY_H_
