// RAW files that would only cost a fuzz target time and memory.
#ifndef LUMVIK_FUZZ_LARGE_RAW_H_
#define LUMVIK_FUZZ_LARGE_RAW_H_

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>

#include "image/guarded_libraw.h"

namespace lumvik::fuzz {

// A file of a few kilobytes can claim hundreds of megapixels and keep LibRaw busy for a minute, in gigabytes
// of memory. A test covers that.
inline bool IsLargeRaw(const std::string& path) {
  constexpr size_t kMaxPixels = size_t{1} << 20;
  const auto raw = std::make_unique<GuardedLibRaw>();
  if (raw->OpenFile(path) != LIBRAW_SUCCESS) return false;
  const libraw_image_sizes_t& sizes = raw->imgdata.sizes;
  const size_t recorded = size_t{sizes.raw_width} * sizes.raw_height;
  const size_t delivered = size_t{sizes.iwidth} * sizes.iheight;
  return std::max(recorded, delivered) > kMaxPixels;
}

}  // namespace lumvik::fuzz

#endif  // LUMVIK_FUZZ_LARGE_RAW_H_
