// Develop settings stored in XMP: those of Camera Raw and lumvik's own.
#ifndef LUMVIK_HOST_MODULES_CAMERA_RAW_PROPERTIES_H_
#define LUMVIK_HOST_MODULES_CAMERA_RAW_PROPERTIES_H_

#include <exiv2/exiv2.hpp>
#include <functional>
#include <string>
#include <vector>

#include "modules/metadata_interface.h"

namespace lumvik::metadata {

// The namespace of lumvik's own properties.
constexpr char kOwnNamespace[] = "https://lumvik.invalid/ns/1.0/";
constexpr char kOwnPrefix[] = "lumvik";

// Throws std::exception when the packet is not XMP.
Exiv2::XmpData DecodePacket(const std::string& packet);

// The frame according to the packet.
lumvik_metadata_frame FrameOf(const Exiv2::XmpData& xmp);

// The frame of a photograph.
lumvik_metadata_frame FrameOf(const Exiv2::Image& photograph);

struct Property {
  std::string prefix;
  std::string name;
  std::vector<std::string> parts;  // the value, or the items of a list
};

// The properties of both namespaces, without the members of structures, in file order.
std::vector<Property> DevelopProperties(const Exiv2::XmpData& xmp);

}  // namespace lumvik::metadata

#endif  // LUMVIK_HOST_MODULES_CAMERA_RAW_PROPERTIES_H_
