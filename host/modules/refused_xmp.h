// XMP packets in files that must not be parsed.
#ifndef LUMVIK_HOST_MODULES_REFUSED_XMP_H_
#define LUMVIK_HOST_MODULES_REFUSED_XMP_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lumvik::metadata {

struct RefusedXmp {
  std::size_t name_at;  // any other byte at this offset, and a reader no longer takes it for XMP
  std::string why;
};

// The packets in a JPEG, PNG, WebP, TIFF or RAW file that exiv2 would parse and XmpFault() refuses. In a
// JPEG, EXIF may hold another one, whose size is limited to 64 KiB.
std::vector<RefusedXmp> FindRefusedXmp(std::string_view file);

}  // namespace lumvik::metadata

#endif  // LUMVIK_HOST_MODULES_REFUSED_XMP_H_
