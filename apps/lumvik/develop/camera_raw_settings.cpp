#include "develop/camera_raw_settings.h"

#include <algorithm>
#include <exiv2/exiv2.hpp>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>

#include "develop/metadata_file.h"
#include "develop/sidecar.h"
#include "files/file_paths.h"

namespace lumvik {
namespace {

constexpr char kNamespace[] = "crs";
constexpr int kUpright = 1;  // EXIF orientations
constexpr int kLastOrientation = 8;
constexpr const char* kXmpExtensions[] = {".xmp", ".XMP"};

// Far more than masks take in any sidecar.
constexpr std::uintmax_t kMaxXmpBytes = std::uintmax_t{64} << 20;

std::runtime_error Unreadable(const std::string& path, const std::string& why) {
  return std::runtime_error("cannot read '" + path + "': " + why);
}

Exiv2::XmpData Decode(const std::string& path) {
  RequireReadable(path);
  if (std::filesystem::file_size(std::filesystem::u8path(path)) > kMaxXmpBytes)
    throw Unreadable(path, "the file is too large");
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);  // its messages are bare error numbers
  Exiv2::XmpData xmp;
  if (Exiv2::XmpParser::decode(xmp, text) != 0) throw Unreadable(path, "it is not XMP, or it is damaged");
  return xmp;
}

template <typename Data, typename Key>
int NumberOf(const Data& data, const Key& key, int otherwise) {
  const auto entry = data.findKey(key);
  return entry == data.end() ? otherwise : static_cast<int>(entry->toLong());
}

template <typename Data, typename Key>
int OrientationOf(const Data& data, const Key& key) {
  const int orientation = NumberOf(data, key, kUpright);
  return orientation >= kUpright && orientation <= kLastOrientation ? orientation : kUpright;
}

StoredFrame FrameOf(const Exiv2::XmpData& xmp) {
  return {NumberOf(xmp, Exiv2::XmpKey("Xmp.tiff.ImageWidth"), 0),
          NumberOf(xmp, Exiv2::XmpKey("Xmp.tiff.ImageLength"), 0),
          OrientationOf(xmp, Exiv2::XmpKey("Xmp.tiff.Orientation"))};
}

StoredFrame FrameOf(const Exiv2::Image& photograph) {
  return {static_cast<int>(photograph.pixelWidth()), static_cast<int>(photograph.pixelHeight()),
          OrientationOf(photograph.exifData(), Exiv2::ExifKey("Exif.Image.Orientation"))};
}

std::vector<std::string> PartsOf(const Exiv2::Xmpdatum& property) {
  if (property.typeId() == Exiv2::xmpText) return {property.toString()};
  std::vector<std::string> parts;
  parts.reserve(static_cast<std::size_t>(property.count()));
  for (int i = 0; i < static_cast<int>(property.count()); ++i) parts.push_back(property.toString(i));
  return parts;
}

CameraRawSettings SettingsOf(const std::string& file, const Exiv2::XmpData& xmp, const StoredFrame& frame) {
  CameraRawSettings settings = {file, frame, {}};
  for (const Exiv2::Xmpdatum& property : xmp) {
    const std::string name = property.tagName();
    const bool nested = name.find_first_of("/[") != std::string::npos;  // member of a structure
    if (property.groupName() == kNamespace && !nested)
      settings.properties.emplace_back(name, PartsOf(property));
  }
  if (settings.properties.empty()) throw Unreadable(file, "it has no Camera Raw or Lightroom settings");
  return settings;
}

std::optional<std::string> XmpSidecar(const std::string& photograph) {
  for (const char* extension : kXmpExtensions) {
    if (auto sidecar = FindSidecar(photograph, extension)) return sidecar;
  }
  return std::nullopt;
}

MetadataFile OpenPhotograph(const std::string& path) {
  RequireReadable(path);
  try {
    return ReadMetadata(path);
  } catch (const std::exception& error) {
    throw Unreadable(path, error.what());
  }
}

}  // namespace

CameraRawSettings ReadCameraRawSettings(const std::string& path) {
  const std::string extension = std::filesystem::u8path(path).extension().string();
  if (std::find(std::begin(kXmpExtensions), std::end(kXmpExtensions), extension) !=
      std::end(kXmpExtensions)) {
    const Exiv2::XmpData xmp = Decode(path);
    return SettingsOf(path, xmp, FrameOf(xmp));
  }
  const MetadataFile photograph = OpenPhotograph(path);
  if (photograph.get() == nullptr)
    throw Unreadable(path, "it is neither an XMP file nor a photograph with metadata");
  const std::optional<std::string> sidecar = XmpSidecar(path);
  const Exiv2::XmpData xmp = sidecar ? Decode(*sidecar) : photograph->xmpData();
  return SettingsOf(sidecar.value_or(path), xmp, FrameOf(*photograph));
}

}  // namespace lumvik
