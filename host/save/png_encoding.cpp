#include "save/png_encoding.h"

#include <png.h>

#include <new>

#include "base/failure.h"

namespace lumvik::host {
namespace {

png_uint_32 PngFormatOf(int channels) {
  switch (channels) {
    case 1:
      return PNG_FORMAT_GRAY;
    case 3:
      return PNG_FORMAT_RGB;
    case 4:
      return PNG_FORMAT_RGBA;
    default:
      throw Failure(LUMVIK_HOST_INVALID_ARGUMENT,
                    "channels is " + std::to_string(channels) + "; a PNG has 1, 3 or 4");
  }
}

}  // namespace

std::string EncodePng(const std::uint8_t* pixels, int width, int height, int channels) {
  if (width <= 0 || height <= 0) {
    throw Failure(LUMVIK_HOST_INVALID_ARGUMENT,
                  "the size is " + std::to_string(width) + " x " + std::to_string(height) + " pixels");
  }
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(width);
  image.height = static_cast<png_uint_32>(height);
  image.format = PngFormatOf(channels);
  constexpr int kAs8Bits = 0;
  constexpr png_int_32 kNoPadding = 0;
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::string bytes(size, '\0');
  if (png_image_write_to_memory(&image, bytes.data(), &size, kAs8Bits, pixels, kNoPadding, nullptr) == 0) {
    // libpng and zlib report it in their own words.
    const std::string reason = image.message;
    if (reason.find("memory") != std::string::npos) throw std::bad_alloc();
    throw Failure(LUMVIK_HOST_INTERNAL, "cannot encode the PNG: " + reason);
  }
  bytes.resize(size);
  return bytes;
}

}  // namespace lumvik::host
