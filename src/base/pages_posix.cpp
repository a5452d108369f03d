#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

#include "base/pages.h"

namespace lumvik {
namespace {

constexpr size_t kHugePage = 2 << 20;

// Advises on the pages that lie entirely within the memory. Advice only: whatever the system makes of it, the
// memory is usable.
[[maybe_unused]] void Advise(void* memory, size_t bytes, size_t page, int advice) {
  const auto begin = reinterpret_cast<uintptr_t>(memory);
  const uintptr_t first_page = (begin + page - 1) / page * page;
  const uintptr_t last_page = (begin + bytes) / page * page;
  if (first_page < last_page) {
    madvise(static_cast<uint8_t*>(memory) + (first_page - begin), last_page - first_page, advice);
  }
}

}  // namespace

void PreferHugePages([[maybe_unused]] void* memory, [[maybe_unused]] size_t bytes) {
#if defined(MADV_HUGEPAGE)
  Advise(memory, bytes, kHugePage, MADV_HUGEPAGE);
#endif
}

void OfferPages([[maybe_unused]] void* memory, [[maybe_unused]] size_t bytes) {
#if defined(MADV_FREE)
  Advise(memory, bytes, static_cast<size_t>(sysconf(_SC_PAGESIZE)), MADV_FREE);
#endif
}

}  // namespace lumvik
