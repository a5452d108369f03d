#ifndef LUMVIK_BASE_MATRIX_MEMORY_WIN32_H_
#define LUMVIK_BASE_MATRIX_MEMORY_WIN32_H_

#include <cstddef>

namespace lumvik {

inline constexpr size_t kMostKeptMatrixBytes = size_t{128} << 20;

// From now on, keeps the memory of freed matrices for the next ones, at most kMostKeptMatrixBytes of it.
// Windows unmaps a large block when it is freed, and the next block consists of fresh pages, whose first
// touch took more than half of the time of some operations. On Linux the C library keeps blocks.
void KeepMatrixMemory();

}  // namespace lumvik

#endif  // LUMVIK_BASE_MATRIX_MEMORY_WIN32_H_
