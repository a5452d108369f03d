// The size stated in the header of a photograph.
#ifndef LUMVIK_HOST_FILES_IMAGE_SIZE_H_
#define LUMVIK_HOST_FILES_IMAGE_SIZE_H_

#include <cstdint>
#include <optional>
#include <string_view>

#include "lumvik_host.h"

namespace lumvik::host {

struct ImageSize {
  std::uint64_t width;  // pixels, as stored
  std::uint64_t height;
};

// Of a file of a format other than RAW. Nothing if the header is damaged.
std::optional<ImageSize> SizeInHeader(std::string_view file, lumvik_host_format format);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_IMAGE_SIZE_H_
