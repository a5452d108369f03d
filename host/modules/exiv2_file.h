// Reads files with exiv2.
#ifndef LUMVIK_HOST_MODULES_EXIV2_FILE_H_
#define LUMVIK_HOST_MODULES_EXIV2_FILE_H_

#include <exiv2/exiv2.hpp>
#include <memory>
#include <string>

namespace lumvik::metadata {

// Keeps the bytes that the image reads, if they are not in a file.
struct Exiv2Closer {
  std::shared_ptr<const std::string> bytes;
  void operator()(Exiv2::Image* image) const { delete image; }
};
using Exiv2File = std::unique_ptr<Exiv2::Image, Exiv2Closer>;

// The file, whose metadata is not yet read; null for a format unknown to exiv2. XMP that must not be parsed
// is hidden from exiv2, and `xmp_fault` gets the reason.
Exiv2File FindExiv2File(const std::string& path, std::string& xmp_fault);

// The same for the bytes of a file.
Exiv2File FindExiv2Image(std::string bytes, std::string& xmp_fault);

// The file with its metadata, as above. Throws std::exception when the metadata is damaged.
Exiv2File OpenExiv2File(const std::string& path, std::string& xmp_fault);

// The lens by the EXIF tag or, since older cameras record only a number in the maker note, by exiv2's lists;
// "" if unknown.
std::string LensOf(const Exiv2::ExifData& exif);

}  // namespace lumvik::metadata

#endif  // LUMVIK_HOST_MODULES_EXIV2_FILE_H_
