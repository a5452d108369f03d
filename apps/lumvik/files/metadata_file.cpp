#include "files/metadata_file.h"

#include <filesystem>

namespace lumvik {

MetadataFile ReadMetadata(const std::string& path) {
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);  // warnings about the file
#ifdef EXV_ENABLE_BMFF
  Exiv2::enableBMFF(true);  // CR3, off by default in older versions
#endif
  // An absolute path, since exiv2 takes "-" for standard input and "http:..." for a URL.
  const std::string absolute = std::filesystem::absolute(std::filesystem::u8path(path)).string();
  if (Exiv2::ImageFactory::getType(absolute) == Exiv2::ImageType::none) return nullptr;
  MetadataFile file(Exiv2::ImageFactory::open(absolute).release());
  file->readMetadata();
  return file;
}

}  // namespace lumvik
