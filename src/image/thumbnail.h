// Small JPEG pictures of files that need not be loaded for it.
#ifndef LUMVIK_IMAGE_THUMBNAIL_H_
#define LUMVIK_IMAGE_THUMBNAIL_H_

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "image/embedded_preview.h"

namespace lumvik {

// A JPEG file in memory from malloc, which a host can be given.
struct Thumbnail {
  std::unique_ptr<uint8_t, decltype(&std::free)> data{nullptr, std::free};
  size_t size = 0;  // bytes; after kNoMemory those there was no room for
};

// An ordinary image is reduced to at most 160 pixels on the long side. A RAW file's JPEG preview is taken as
// LibRaw delivers it, a bitmap preview is encoded at its size, red and blue changing places on the way. A
// bitmap of fewer bytes than its size needs, or of no size or one that a JPEG cannot have, counts as not
// delivered. On a failure but kNoMemory `thumbnail` is left as it was.
FileStatus MakeThumbnail(const std::string& path, Thumbnail& thumbnail);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_THUMBNAIL_H_
