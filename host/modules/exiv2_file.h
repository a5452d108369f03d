// Reads files with exiv2.
#ifndef LUMVIK_HOST_MODULES_EXIV2_FILE_H_
#define LUMVIK_HOST_MODULES_EXIV2_FILE_H_

#include <exiv2/exiv2.hpp>
#include <memory>
#include <string>

namespace lumvik::metadata {

using Exiv2File = std::unique_ptr<Exiv2::Image>;

// The file, whose metadata is not yet read; null for a format unknown to exiv2.
Exiv2File FindExiv2File(const std::string& path);

// The file with its metadata; null for a format unknown to exiv2. Throws std::exception when the metadata is
// damaged.
Exiv2File OpenExiv2File(const std::string& path);

// The lens by the EXIF tag or, since older cameras record only a number in the maker note, by exiv2's lists;
// "" if unknown.
std::string LensOf(const Exiv2::ExifData& exif);

}  // namespace lumvik::metadata

#endif  // LUMVIK_HOST_MODULES_EXIV2_FILE_H_
