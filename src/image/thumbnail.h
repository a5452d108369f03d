// Small JPEG images of files, made without loading them.
#ifndef LUMVIK_IMAGE_THUMBNAIL_H_
#define LUMVIK_IMAGE_THUMBNAIL_H_

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "image/embedded_preview.h"

namespace lumvik {

enum class ThumbnailStatus {
  kMade = 0,
  kUnreadable = static_cast<int>(PreviewStatus::kUnreadable),
  kNoPreview = static_cast<int>(PreviewStatus::kNone),
  kPreviewNotDelivered = static_cast<int>(PreviewStatus::kNotDelivered),
  kNoMemory = -4,
};

// A JPEG file in memory from malloc, which can be handed to a host.
struct Thumbnail {
  std::unique_ptr<uint8_t, decltype(&std::free)> data{nullptr, std::free};
  size_t size = 0;  // bytes; after kNoMemory, the size that could not be allocated
};

// Reduces an ordinary image to at most 160 pixels on the long side. Takes a RAW file's JPEG preview as LibRaw
// delivers it; encodes a bitmap preview at its own size with red and blue swapped. A bitmap with fewer bytes
// than its size needs, or with a size that no JPEG can have, counts as not delivered. On any failure but
// kNoMemory `thumbnail` is unchanged.
ThumbnailStatus MakeThumbnail(const std::string& path, Thumbnail& thumbnail);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_THUMBNAIL_H_
