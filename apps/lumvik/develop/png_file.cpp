#include "develop/png_file.h"

#include <png.h>

#include <stdexcept>

#include "develop/staged_file.h"

namespace lumvik {
namespace {

png_uint_32 FormatOf(int channels) {
  switch (channels) {
    case 1:
      return PNG_FORMAT_GRAY;
    case 3:
      return PNG_FORMAT_RGB;
    default:
      return PNG_FORMAT_RGBA;
  }
}

}  // namespace

void WritePng(const Pixels& pixels, const std::filesystem::path& target) {
  StagedFile file(target, ".png");
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(pixels.width);
  image.height = static_cast<png_uint_32>(pixels.height);
  image.format = FormatOf(pixels.channels);
  constexpr int kAs8Bits = 0;
  constexpr png_int_32 kNoPadding = 0;
  if (png_image_write_to_file(&image, file.TemporaryPath().c_str(), kAs8Bits, pixels.data.data(), kNoPadding,
                              nullptr) == 0) {
    throw std::runtime_error("cannot write '" + target.string() + "': " + image.message);
  }
  file.Commit();
}

}  // namespace lumvik
