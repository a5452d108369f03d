// What the engine tells of a photograph by its path alone. Each function throws std::runtime_error with a
// sentence for the user.
#ifndef LUMVIK_APPS_PATH_TOOLS_H_
#define LUMVIK_APPS_PATH_TOOLS_H_

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

// The hash of how the photograph looks.
std::uint64_t HashOf(const std::string& path);

// 16 hexadecimal digits.
std::string HexOf(std::uint64_t hash);

}  // namespace lumvik

#endif  // LUMVIK_APPS_PATH_TOOLS_H_
