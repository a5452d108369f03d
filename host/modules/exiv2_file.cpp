#include "modules/exiv2_file.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>
#include <vector>

#include "modules/refused_xmp.h"

namespace lumvik::metadata {

namespace {

// Changes the names of packets so that exiv2 does not recognize them.
void Hide(const std::vector<RefusedXmp>& packets, std::string& file) {
  for (const RefusedXmp& packet : packets) {
    constexpr unsigned kBit = 2;  // makes another letter of those that start names
    char& name = file[packet.name_at];
    name = static_cast<char>(static_cast<unsigned char>(name) ^ kBit);
  }
}

Exiv2File ImageOf(std::string bytes) {
  auto kept = std::make_shared<const std::string>(std::move(bytes));
  auto* const image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(kept->data()),
                                                static_cast<long>(kept->size()))
                          .release();
  return Exiv2File(image, Exiv2Closer{std::move(kept)});
}

}  // namespace

Exiv2File FindExiv2Image(std::string bytes, std::string& xmp_fault) {
  const std::vector<RefusedXmp> refused = FindRefusedXmp(bytes);
  if (!refused.empty()) xmp_fault = refused.front().why;
  Hide(refused, bytes);
  return ImageOf(std::move(bytes));
}

Exiv2File OpenExiv2File(const std::string& path, std::string& xmp_fault) {
  Exiv2File file = FindExiv2File(path, xmp_fault);
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
