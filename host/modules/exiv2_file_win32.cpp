#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <utility>

#include "modules/exiv2_file.h"

namespace lumvik::metadata {

// In memory, since exiv2 takes a path to be in the process's code page.
Exiv2File FindExiv2File(const std::string& path, std::string& xmp_fault) {
  const std::filesystem::path name = std::filesystem::u8path(path);
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(name, error);
  if (error || size == 0 || size > std::numeric_limits<long>::max()) return nullptr;
  std::string bytes(static_cast<std::size_t>(size), '\0');
  std::ifstream file(name, std::ios::binary);
  if (!file.read(bytes.data(), static_cast<std::streamsize>(size))) return nullptr;
  const auto* const data = reinterpret_cast<const Exiv2::byte*>(bytes.data());
  if (Exiv2::ImageFactory::getType(data, static_cast<long>(size)) == Exiv2::ImageType::none) return nullptr;
  return FindExiv2Image(std::move(bytes), xmp_fault);
}

}  // namespace lumvik::metadata
