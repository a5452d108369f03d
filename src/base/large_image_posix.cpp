#include <sys/mman.h>

#include <cstdint>

#include "base/large_image.h"

namespace lumvik {
namespace {

constexpr uintptr_t kHugePage = 2 << 20;

}  // namespace

cv::Mat LargeImage(cv::Size size, int type) {
  cv::Mat image(size, type);
#if defined(MADV_HUGEPAGE)
  const auto begin = reinterpret_cast<uintptr_t>(image.datastart);
  const auto end = reinterpret_cast<uintptr_t>(image.dataend);
  const uintptr_t first_page = (begin + kHugePage - 1) / kHugePage * kHugePage;
  const uintptr_t last_page = end / kHugePage * kHugePage;
  // Advice only: without huge pages the image still has small ones.
  if (first_page < last_page) {
    madvise(image.data + (first_page - begin), last_page - first_page, MADV_HUGEPAGE);
  }
#endif
  return image;
}

}  // namespace lumvik
