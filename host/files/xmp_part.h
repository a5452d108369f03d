// XMP packets in JPEG, PNG and TIFF files.
#ifndef LUMVIK_HOST_FILES_XMP_PART_H_
#define LUMVIK_HOST_FILES_XMP_PART_H_

#include <string>
#include <string_view>

#include "lumvik_host.h"

namespace lumvik::host {

// A packet as it is in a file; empty without one.
struct XmpPart {
  std::string_view packet;
  bool is_compressed = false;    // by zlib, possible in a PNG
  std::string_view png_checked;  // of a PNG: the type and data of the chunk, before their checksum
};

// The first one of an image.
XmpPart FindXmp(std::string_view image, lumvik_host_format format);

// The image with this packet instead of those that it has. Throws Failure: LUMVIK_HOST_UNSUPPORTED for one
// that is too long for the format.
std::string ReplaceXmp(std::string image, lumvik_host_format format, std::string_view packet);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_XMP_PART_H_
