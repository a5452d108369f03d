// The size stated in the header of a JPEG.
#ifndef LUMVIK_HOST_FILES_JPEG_SIZE_H_
#define LUMVIK_HOST_FILES_JPEG_SIZE_H_

#include <cstddef>
#include <cstdint>
#include <optional>

namespace lumvik::host {

struct JpegSize {
  std::int32_t width;  // pixels, as stored
  std::int32_t height;
};

// Nothing if the header is damaged.
std::optional<JpegSize> JpegSizeOf(const std::uint8_t* data, std::size_t size);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_JPEG_SIZE_H_
