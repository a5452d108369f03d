// Engine functions that take a path instead of a context. Each throws std::runtime_error with a message for
// the user.
#ifndef LUMVIK_APPS_DEVELOP_PATH_TOOLS_H_
#define LUMVIK_APPS_DEVELOP_PATH_TOOLS_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "lumvik.h"

namespace lumvik {

// A JPEG file in memory.
struct ThumbnailFile {
  std::unique_ptr<std::uint8_t, decltype(&lumvik_free_thumb)> data{nullptr, lumvik_free_thumb};
  std::size_t size = 0;  // bytes
};
ThumbnailFile ExtractThumbnail(const std::string& path);

// The perceptual hash of the photograph.
std::uint64_t HashOf(const std::string& path);

// 16 hexadecimal digits.
std::string HexOf(std::uint64_t hash);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_PATH_TOOLS_H_
