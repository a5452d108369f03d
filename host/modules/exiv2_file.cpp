#include "modules/exiv2_file.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace lumvik::metadata {

Exiv2File FindExiv2File(const std::string& path) {
  // An absolute path, since exiv2 takes "-" for standard input and "http:..." for a URL.
  const std::string absolute = std::filesystem::absolute(std::filesystem::u8path(path)).string();
  if (Exiv2::ImageFactory::getType(absolute) == Exiv2::ImageType::none) return nullptr;
  return Exiv2File(Exiv2::ImageFactory::open(absolute).release());
}

Exiv2File OpenExiv2File(const std::string& path) {
  Exiv2File file = FindExiv2File(path);
  if (file != nullptr) file->readMetadata();
  return file;
}

std::string LensOf(const Exiv2::ExifData& exif) {
  const auto lens = Exiv2::lensName(exif);
  if (lens == exif.end()) return {};
  std::string name = lens->print(&exif);
  // Unknown numbers remain numbers.
  const bool named =
      std::any_of(name.begin(), name.end(), [](unsigned char c) { return std::isalpha(c) != 0; });
  return named && name != "n/a" ? name : std::string();
}

}  // namespace lumvik::metadata
