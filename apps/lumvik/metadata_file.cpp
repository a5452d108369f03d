#include "metadata_file.h"

#include <filesystem>

namespace lumvik {

MetadataFile ReadMetadata(const std::string& path) {
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);  // oddities that are the file's own
#ifdef EXV_ENABLE_BMFF
  Exiv2::enableBMFF(true);  // CR3 files, which older versions read on demand alone
#endif
  // An absolute path, as "-" would be the standard input and "http:..." an address.
  const std::string absolute = std::filesystem::absolute(std::filesystem::u8path(path)).string();
  if (Exiv2::ImageFactory::getType(absolute) == Exiv2::ImageType::none) return nullptr;
  MetadataFile file(Exiv2::ImageFactory::open(absolute).release());
  file->readMetadata();
  return file;
}

}  // namespace lumvik
