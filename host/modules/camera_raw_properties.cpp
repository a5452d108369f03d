#include "modules/camera_raw_properties.h"

#include <cstdint>
#include <stdexcept>

#include "modules/xmp_fence.h"

namespace lumvik::metadata {
namespace {

constexpr char kCameraRawPrefix[] = "crs";
constexpr std::int32_t kUpright = 1;  // EXIF orientations
constexpr std::int32_t kLastOrientation = 8;

template <typename Data, typename Key>
std::int32_t NumberOf(const Data& data, const Key& key, std::int32_t otherwise) {
  const auto entry = data.findKey(key);
  return entry == data.end() ? otherwise : static_cast<std::int32_t>(entry->toLong());
}

template <typename Data, typename Key>
std::int32_t OrientationOf(const Data& data, const Key& key) {
  const std::int32_t orientation = NumberOf(data, key, kUpright);
  return orientation >= kUpright && orientation <= kLastOrientation ? orientation : kUpright;
}

std::vector<std::string> PartsOf(const Exiv2::Xmpdatum& property) {
  if (property.typeId() == Exiv2::xmpText) return {property.toString()};
  std::vector<std::string> parts;
  parts.reserve(static_cast<std::size_t>(property.count()));
  for (int i = 0; i < static_cast<int>(property.count()); ++i) parts.push_back(property.toString(i));
  return parts;
}

}  // namespace

Exiv2::XmpData DecodePacket(const std::string& packet) {
  const std::string fault = XmpFault(packet);
  if (!fault.empty()) throw std::runtime_error(fault);
  Exiv2::XmpData xmp;
  if (Exiv2::XmpParser::decode(xmp, packet) != 0) {
    throw std::runtime_error("it is not XMP, or it is damaged");
  }
  return xmp;
}

lumvik_metadata_frame FrameOf(const Exiv2::XmpData& xmp) {
  return {NumberOf(xmp, Exiv2::XmpKey("Xmp.tiff.ImageWidth"), 0),
          NumberOf(xmp, Exiv2::XmpKey("Xmp.tiff.ImageLength"), 0),
          OrientationOf(xmp, Exiv2::XmpKey("Xmp.tiff.Orientation"))};
}

lumvik_metadata_frame FrameOf(const Exiv2::Image& photograph) {
  return {photograph.pixelWidth(), photograph.pixelHeight(),
          OrientationOf(photograph.exifData(), Exiv2::ExifKey("Exif.Image.Orientation"))};
}

std::vector<Property> DevelopProperties(const Exiv2::XmpData& xmp) {
  std::vector<Property> properties;
  for (const Exiv2::Xmpdatum& datum : xmp) {
    const std::string prefix = datum.groupName();
    const std::string name = datum.tagName();
    const bool nested = name.find_first_of("/[") != std::string::npos;  // member of a structure
    if ((prefix != kCameraRawPrefix && prefix != kOwnPrefix) || nested) continue;
    properties.push_back({prefix, name, PartsOf(datum)});
  }
  return properties;
}

}  // namespace lumvik::metadata
