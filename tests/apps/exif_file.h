// Reads and writes EXIF in tests.
#ifndef LUMVIK_TESTS_APPS_EXIF_FILE_H_
#define LUMVIK_TESTS_APPS_EXIF_FILE_H_

#include <exiv2/exiv2.hpp>
#include <string>

namespace lumvik::test {

Exiv2::ExifData ReadExif(const std::string& path);
void WriteExif(const std::string& path, const Exiv2::ExifData& exif);

// The value of a tag as text; "(none)" when missing.
std::string TagValue(const Exiv2::ExifData& exif, const std::string& tag);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_APPS_EXIF_FILE_H_
