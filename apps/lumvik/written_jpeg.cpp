#include "written_jpeg.h"

#include <cstddef>
#include <cstdint>
#include <exiv2/exiv2.hpp>
#include <fstream>
#include <stdexcept>

namespace lumvik {
namespace {

constexpr std::uint16_t kUpright = 1;
constexpr unsigned char kMarker = 0xFF;  // announces a segment of a JPEG file
constexpr unsigned char kEndOfImage = 0xD9;

template <std::size_t kSize>
bool Read(std::ifstream& file, unsigned char (&bytes)[kSize]) {
  return static_cast<bool>(file.read(reinterpret_cast<char*>(bytes), kSize));
}

void SetOrientation(const std::string& path) {
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);  // what it finds odd came with the photograph
  const auto image = Exiv2::ImageFactory::open(path, false);
  image->readMetadata();
  const auto orientation = image->exifData().findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
  if (orientation == image->exifData().end() || orientation->toString() == std::to_string(kUpright)) return;
  *orientation = kUpright;
  image->writeMetadata();
}

// Looks at the places where the engine's carrying over of the EXIF can spoil the file without a word.
void RequireWhole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  unsigned char end[2] = {};
  file.seekg(-static_cast<std::streamoff>(sizeof end), std::ios::end);
  if (!Read(file, end) || end[0] != kMarker || end[1] != kEndOfImage) {
    throw std::runtime_error("the file came out incomplete");
  }
  // The start of the image, the marker of the first segment, the length of that without its marker.
  unsigned char start[6] = {};
  file.seekg(0);
  Read(file, start);
  file.seekg(4 + (start[4] << 8 | start[5]));
  if (file.get() != kMarker) {
    throw std::runtime_error("its EXIF is too long for a JPEG; --no-exif writes it without EXIF");
  }
}

}  // namespace

void FinishExif(const std::string& path) {
  RequireWhole(path);
  try {
    SetOrientation(path);
  } catch (const std::exception& error) {
    throw std::runtime_error(std::string("its EXIF orientation cannot be set: ") + error.what());
  }
  RequireWhole(path);
}

}  // namespace lumvik
