#include <sys/mman.h>

#include <cstdint>

#include "base/large_image.h"

namespace lumvik {
namespace {

constexpr uintptr_t kHugePage = 2 << 20;

}  // namespace

void PreferHugePages([[maybe_unused]] void* memory, [[maybe_unused]] size_t bytes) {
#if defined(MADV_HUGEPAGE)
  const auto begin = reinterpret_cast<uintptr_t>(memory);
  const uintptr_t first_page = (begin + kHugePage - 1) / kHugePage * kHugePage;
  const uintptr_t last_page = (begin + bytes) / kHugePage * kHugePage;
  // Advice only: without huge pages the memory still has small ones.
  if (first_page < last_page) {
    madvise(static_cast<uint8_t*>(memory) + (first_page - begin), last_page - first_page, MADV_HUGEPAGE);
  }
#endif
}

cv::Mat LargeImage(cv::Size size, int type) {
  cv::Mat image(size, type);
  PreferHugePages(image.data, image.total() * image.elemSize());
  return image;
}

}  // namespace lumvik
