#include <filesystem>
#include <string_view>

#include "modules/exiv2_file.h"
#include "modules/refused_xmp.h"

namespace lumvik::metadata {

Exiv2File FindExiv2File(const std::string& path, std::string& xmp_fault) {
  // An absolute path, since exiv2 takes "-" for standard input and "http:..." for a URL.
  const std::string absolute = std::filesystem::absolute(std::filesystem::u8path(path)).string();
  if (Exiv2::ImageFactory::getType(absolute) == Exiv2::ImageType::none) return nullptr;
  Exiv2::FileIo file(absolute);
  if (file.open() == 0 && file.size() > 0) {
    const std::string_view content(reinterpret_cast<const char*>(file.mmap()), file.size());
    if (!FindRefusedXmp(content).empty()) return FindExiv2Image(std::string(content), xmp_fault);
  }
  return Exiv2File(Exiv2::ImageFactory::open(absolute).release());
}

}  // namespace lumvik::metadata
