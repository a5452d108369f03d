// How much memory there is to work in.
#ifndef LUMVIK_APPS_FREE_MEMORY_H_
#define LUMVIK_APPS_FREE_MEMORY_H_

#include <cstdint>

namespace lumvik {

// The bytes that processes can still take before others are pushed out of memory or the system ends one. All
// there are in theory when the system does not tell.
std::uint64_t FreeMemory();

}  // namespace lumvik

#endif  // LUMVIK_APPS_FREE_MEMORY_H_
