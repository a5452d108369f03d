#include "modules/metadata_copy.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "modules/exiv2_file.h"
#include "modules/metadata_reading.h"

namespace lumvik::metadata {
namespace {

constexpr std::uint16_t kUprightTag = 1;
constexpr std::uint16_t kSrgb = 1;
constexpr std::uint16_t kUncalibrated = 65535;
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
constexpr char kIptcCopyright[] = "Iptc.Application2.Copyright";

template <typename Names>
bool Contains(const Names& names, const std::string& name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

bool BeginsWith(const std::string& text, const std::string& beginning) {
  return text.rfind(beginning, 0) == 0;
}

bool IsKept(const Exiv2::Exifdatum& tag, bool position) {
  const std::string group = tag.groupName();
  if (group == "Image") return Contains(kImageTags, tag.tagName());
  if (group == "Photo") return !Contains(kStalePhotoTags, tag.tagName());
  return group == "GPSInfo" && position;
}

bool IsKept(const Exiv2::Iptcdatum& entry, bool /*position*/) {
  return !BeginsWith(entry.tagName(), "Preview");
}

bool IsKept(const Exiv2::Xmpdatum& entry, bool position) {
  const std::string key = entry.key();
  if (BeginsWith(key, kXmpGps)) return position;
  return key != kXmpFileFormat && std::any_of(std::begin(kXmpNames), std::end(kXmpNames),
                                              [&](const char* name) { return BeginsWith(key, name); });
}

template <typename Data>
Data KeptPart(const Data& data, bool position) {
  Data kept;
  for (const auto& entry : data) {
    if (IsKept(entry, position)) kept.add(entry);
  }
  return kept;
}

KeptMetadata KeptOfSource(const SourceMetadata& source, const KeepOptions& options) {
  KeptMetadata kept = {KeptPart(source.exif, options.position), KeptPart(source.iptc, options.position),
                       KeptPart(source.xmp, options.position)};
  if (kept.exif.empty()) return kept;
  const std::string lens = LensOf(source.exif);
  if (!lens.empty() && kept.exif.findKey(Exiv2::ExifKey(kLensModel)) == kept.exif.end()) {
    kept.exif[kLensModel] = lens;
  }
  return kept;
}

template <typename Data, typename Key>
void Erase(Data& data, const Key& key) {
  const auto entry = data.findKey(key);
  if (entry != data.end()) data.erase(entry);
}

// Replaces the notice wherever there is one, with all its languages, and sets it in EXIF and XMP.
void SetCopyright(KeptMetadata& metadata, const std::string& notice) {
  Erase(metadata.exif, Exiv2::ExifKey(kExifCopyright));
  metadata.exif[kExifCopyright] = notice;
  Erase(metadata.xmp, Exiv2::XmpKey(kXmpCopyright));
  metadata.xmp[kXmpCopyright] = "lang=\"x-default\" " + notice;
  const auto iptc = metadata.iptc.findKey(Exiv2::IptcKey(kIptcCopyright));
  if (iptc != metadata.iptc.end()) iptc->setValue(notice);
}

}  // namespace

KeptMetadata KeptOf(const SourceMetadata& source, const KeepOptions& options) {
  KeptMetadata kept = KeptOfSource(source, options);
  if (options.copyright) SetCopyright(kept, *options.copyright);
  if (!kept.exif.empty()) kept.exif["Exif.Photo.ColorSpace"] = options.is_srgb ? kSrgb : kUncalibrated;
  return kept;
}

ImageWithMetadata::ImageWithMetadata(const void* image, std::size_t size, const KeptMetadata& metadata)
    : image_(Exiv2::ImageFactory::open(static_cast<const Exiv2::byte*>(image), static_cast<long>(size))
                 .release()) {
  image_->readMetadata();
  Exiv2::ExifData& exif = image_->exifData();  // in a TIFF, includes the layout of the pixels
  for (const Exiv2::Exifdatum& tag : metadata.exif) exif[tag.key()].setValue(&tag.value());
  if (!metadata.exif.empty()) {
    const Exiv2::ExifKey orientation("Exif.Image.Orientation");
    if (exif.findKey(orientation) == exif.end()) exif[orientation.key()] = kUprightTag;
    exif["Exif.Photo.PixelXDimension"] = static_cast<std::uint32_t>(image_->pixelWidth());
    exif["Exif.Photo.PixelYDimension"] = static_cast<std::uint32_t>(image_->pixelHeight());
  }
  image_->setIptcData(metadata.iptc);
  image_->setXmpData(metadata.xmp);
  image_->writeMetadata();
  data_ = image_->io().mmap();
}

}  // namespace lumvik::metadata
