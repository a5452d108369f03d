#include "develop/image_metadata.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <exiv2/exiv2.hpp>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "develop/metadata_file.h"
#include "develop/output_format.h"

namespace lumvik {
namespace {

constexpr std::uint16_t kUprightImage = 1;
constexpr std::uint16_t kSrgb = 1;
constexpr char kLensModel[] = "Exif.Photo.LensModel";

// Kept from the main directory, whose other tags describe how pixels are stored.
constexpr const char* kImageTags[] = {"ImageDescription", "Make",           "Model",         "XResolution",
                                      "YResolution",      "ResolutionUnit", "Software",      "DateTime",
                                      "Artist",           "Copyright",      "Rating",        "RatingPercent",
                                      "XPTitle",          "XPComment",      "XPAuthor",      "XPKeywords",
                                      "XPSubject",        "HostComputer",   "TimeZoneOffset"};

// Dropped from the EXIF directory: they describe the original file or its pixels, and maker notes hold file
// offsets.
constexpr const char* kStalePhotoTags[] = {"MakerNote",
                                           "InteroperabilityTag",
                                           "PixelXDimension",
                                           "PixelYDimension",
                                           "ComponentsConfiguration",
                                           "CompressedBitsPerPixel",
                                           "FocalPlaneXResolution",
                                           "FocalPlaneYResolution",
                                           "FocalPlaneResolutionUnit",
                                           "SubjectArea",
                                           "SubjectLocation",
                                           "RelatedSoundFile"};

// Prefixes of the XMP names to keep. Others describe the original file or its editing, or repeat EXIF.
constexpr const char* kXmpNames[] = {"Xmp.dc.",
                                     "Xmp.xmpRights.",
                                     "Xmp.Iptc4xmpCore.",
                                     "Xmp.plus.",
                                     "Xmp.xmp.Rating",
                                     "Xmp.xmp.Label",
                                     "Xmp.aux.Lens",
                                     "Xmp.photoshop.AuthorsPosition",
                                     "Xmp.photoshop.CaptionWriter",
                                     "Xmp.photoshop.City",
                                     "Xmp.photoshop.Country",
                                     "Xmp.photoshop.Credit",
                                     "Xmp.photoshop.DateCreated",
                                     "Xmp.photoshop.Headline",
                                     "Xmp.photoshop.Instructions",
                                     "Xmp.photoshop.Source",
                                     "Xmp.photoshop.State"};
constexpr char kXmpGps[] = "Xmp.exif.GPS";
constexpr char kXmpFileFormat[] = "Xmp.dc.format";

template <typename Names>
bool Contains(const Names& names, const std::string& name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

bool BeginsWith(const std::string& text, const std::string& beginning) {
  return text.rfind(beginning, 0) == 0;
}

bool IsKept(const Exiv2::Exifdatum& tag, bool strip_gps) {
  const std::string group = tag.groupName();
  if (group == "Image") return Contains(kImageTags, tag.tagName());
  if (group == "Photo") return !Contains(kStalePhotoTags, tag.tagName());
  return group == "GPSInfo" && !strip_gps;
}

bool IsKept(const Exiv2::Iptcdatum& entry, bool /*strip_gps*/) {
  return !BeginsWith(entry.tagName(), "Preview");
}

bool IsKept(const Exiv2::Xmpdatum& entry, bool strip_gps) {
  const std::string key = entry.key();
  if (BeginsWith(key, kXmpGps)) return !strip_gps;
  return key != kXmpFileFormat && std::any_of(std::begin(kXmpNames), std::end(kXmpNames),
                                              [&](const char* name) { return BeginsWith(key, name); });
}

template <typename Data>
Data KeptOf(const Data& data, bool strip_gps) {
  Data kept;
  for (const auto& entry : data) {
    if (IsKept(entry, strip_gps)) kept.add(entry);
  }
  return kept;
}

// Older cameras record the lens only in the maker note, usually as a number that exiv2 looks up.
void NameLens(const Exiv2::ExifData& from, Exiv2::ExifData& to) {
  const auto lens = Exiv2::lensName(from);
  if (lens == from.end() || to.findKey(Exiv2::ExifKey(kLensModel)) != to.end()) return;
  const std::string name = lens->print(&from);
  // Unknown numbers remain numbers.
  const bool named =
      std::any_of(name.begin(), name.end(), [](unsigned char c) { return std::isalpha(c) != 0; });
  if (named && name != "n/a") to[kLensModel] = name;
}

struct Metadata {
  Exiv2::ExifData exif;
  Exiv2::IptcData iptc;
  Exiv2::XmpData xmp;
};

Metadata ReadKept(const std::string& photograph, bool strip_gps) {
  const MetadataFile file = ReadMetadata(photograph);
  if (file.get() == nullptr) return {};
  Metadata kept = {KeptOf(file->exifData(), strip_gps), KeptOf(file->iptcData(), strip_gps),
                   KeptOf(file->xmpData(), strip_gps)};
  if (kept.exif.empty()) return kept;
  NameLens(file->exifData(), kept.exif);
  kept.exif["Exif.Image.Orientation"] = kUprightImage;
  // RAW files are developed to sRGB, whatever the camera setting.
  if (!OutputFormatOf(photograph)) kept.exif["Exif.Photo.ColorSpace"] = kSrgb;
  return kept;
}

std::string ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Exiv2 works in memory, since it does not report write errors such as a full disk.
void Write(const Metadata& metadata, const std::string& path) {
  const std::string bytes = ReadBytes(path);
  const auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(bytes.data()),
                                               static_cast<long>(bytes.size()));
  image->readMetadata();
  Exiv2::ExifData& exif = image->exifData();  // in a TIFF, includes the layout of the pixels
  for (const Exiv2::Exifdatum& tag : metadata.exif) exif[tag.key()].setValue(&tag.value());
  if (!metadata.exif.empty()) {
    exif["Exif.Photo.PixelXDimension"] = static_cast<std::uint32_t>(image->pixelWidth());
    exif["Exif.Photo.PixelYDimension"] = static_cast<std::uint32_t>(image->pixelHeight());
  }
  image->setIptcData(metadata.iptc);
  image->setXmpData(metadata.xmp);
  image->writeMetadata();

  Exiv2::BasicIo& written = image->io();
  const auto* data = reinterpret_cast<const char*>(written.mmap());
  std::ofstream file(path, std::ios::binary);
  if (!file.write(data, static_cast<std::streamsize>(written.size())).flush()) {
    throw std::system_error(errno, std::generic_category());
  }
}

// Runs a step and adds a hint to its errors.
template <typename Step>
auto Try(const std::string& failure, const Step& step) {
  try {
    return step();
  } catch (const std::exception& error) {
    throw std::runtime_error(failure + ": " + error.what() + "; use --no-exif to leave it out");
  }
}

}  // namespace

void CopyMetadata(const std::string& photograph, const std::string& path, bool strip_gps) {
  const Metadata metadata =
      Try("the photograph's metadata cannot be read", [&] { return ReadKept(photograph, strip_gps); });
  if (metadata.exif.empty() && metadata.iptc.empty() && metadata.xmp.empty()) return;
  Try("the photograph's metadata cannot be written", [&] { Write(metadata, path); });
}

}  // namespace lumvik
