// Reads the metadata of photographs as far as it is sound.
#ifndef LUMVIK_HOST_MODULES_METADATA_READING_H_
#define LUMVIK_HOST_MODULES_METADATA_READING_H_

#include <exiv2/exiv2.hpp>
#include <string>

#include "modules/damage_log.h"

namespace lumvik::metadata {

struct SourceMetadata {
  Exiv2::ExifData exif;
  Exiv2::IptcData iptc;
  Exiv2::XmpData xmp;
  Damage damage;  // what is missing above
};

// Empty for a format unknown to exiv2. Throws std::bad_alloc.
SourceMetadata ReadSoundMetadata(const std::string& photograph);

}  // namespace lumvik::metadata

#endif  // LUMVIK_HOST_MODULES_METADATA_READING_H_
