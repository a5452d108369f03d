#include "upright_exif.h"

#include <cstdint>
#include <exiv2/exiv2.hpp>
#include <stdexcept>

namespace lumvik {
namespace {

constexpr std::uint16_t kUpright = 1;

void SetOrientation(const std::string& path) {
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);  // its warnings are about makers' habits, not about our file
  const auto image = Exiv2::ImageFactory::open(path, false);
  image->readMetadata();
  const auto orientation = image->exifData().findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
  if (orientation == image->exifData().end() || orientation->toString() == std::to_string(kUpright)) return;
  *orientation = kUpright;
  image->writeMetadata();
}

}  // namespace

void MarkUpright(const std::string& path, const std::string& shown_path) {
  try {
    SetOrientation(path);
  } catch (const std::exception& error) {
    throw std::runtime_error("cannot write '" + shown_path + "': its EXIF orientation cannot be set (" +
                             error.what() + "); --no-exif writes it without EXIF");
  }
}

}  // namespace lumvik
