// How the system backs large blocks of memory.
#ifndef LUMVIK_BASE_PAGES_H_
#define LUMVIK_BASE_PAGES_H_

#include <cstddef>

namespace lumvik {

// Asks for huge pages, which make the first touch of memory much faster. Call it before that.
void PreferHugePages(void* memory, size_t bytes);

// Allows the system to take the pages back when it needs memory. The content becomes undefined; the memory
// stays usable.
void OfferPages(void* memory, size_t bytes);

}  // namespace lumvik

#endif  // LUMVIK_BASE_PAGES_H_
