#include "exif_file.h"

namespace lumvik::test {

Exiv2::ExifData ReadExif(const std::string& path) {
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
  const auto image = Exiv2::ImageFactory::open(path);
  image->readMetadata();
  return image->exifData();
}

void WriteExif(const std::string& path, const Exiv2::ExifData& exif) {
  const auto image = Exiv2::ImageFactory::open(path);
  image->setExifData(exif);
  image->writeMetadata();
}

std::string TagValue(const Exiv2::ExifData& exif, const std::string& tag) {
  const auto entry = exif.findKey(Exiv2::ExifKey(tag));
  return entry == exif.end() ? "(none)" : entry->toString();
}

}  // namespace lumvik::test
