// The metadata of a JPEG or PNG in parts, so that what is damaged does not take the rest with it.
#ifndef LUMVIK_HOST_MODULES_METADATA_PARTS_H_
#define LUMVIK_HOST_MODULES_METADATA_PARTS_H_

#include <optional>
#include <string>
#include <vector>

namespace lumvik::metadata {

struct MetadataPart {
  std::string kind;   // "EXIF", "IPTC" or "XMP"
  std::string image;  // a file of the same format with nothing but this part
};

// Nothing for files of other formats.
std::optional<std::vector<MetadataPart>> PartsOfMetadata(const std::string& path);

// Whether a part of a JPEG states that it has IPTC.
bool StatesIptc(const MetadataPart& part);

}  // namespace lumvik::metadata

#endif  // LUMVIK_HOST_MODULES_METADATA_PARTS_H_
