#include "modules/metadata_reading.h"

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

#include "modules/exiv2_file.h"
#include "modules/metadata_parts.h"

namespace lumvik::metadata {
namespace {

template <typename Data>
void AddAll(const Data& from, Data& to) {
  for (const auto& entry : from) to.add(entry);
}

void Add(const Exiv2::Image& image, SourceMetadata& metadata) {
  AddAll(image.exifData(), metadata.exif);
  AddAll(image.iptcData(), metadata.iptc);
  AddAll(image.xmpData(), metadata.xmp);
}

// Returns the reason of a failure, "" for none. What was read before it stays in the image.
std::string ReadInto(Exiv2::Image& image) {
  try {
    image.readMetadata();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& failure) {
    return failure.what();
  }
  return {};
}

void ReadPart(const MetadataPart& part, SourceMetadata& metadata) {
  const DamageLog log(metadata.damage);
  std::string xmp_fault;
  const Exiv2File image = FindExiv2Image(part.image, xmp_fault);
  if (!xmp_fault.empty()) metadata.damage.emplace("XMP", xmp_fault);
  const std::string failure = ReadInto(*image);
  if (!failure.empty()) metadata.damage.emplace(part.kind, failure);
  Add(*image, metadata);
}

}  // namespace

SourceMetadata ReadSoundMetadata(const std::string& photograph) {
  std::string xmp_fault;
  const Exiv2File file = FindExiv2File(photograph, xmp_fault);
  if (file == nullptr) return {};
  const auto parts = PartsOfMetadata(photograph);
  SourceMetadata metadata;
  std::string failure;
  {
    const DamageLog log(metadata.damage);
    failure = ReadInto(*file);
  }
  // Exiv2 stops at the first damage, be it of the image data or of the color profile.
  if (!failure.empty() && parts) {
    metadata = {};
    for (const MetadataPart& part : *parts) ReadPart(part, metadata);
  } else {
    Add(*file, metadata);
    if (!failure.empty()) metadata.damage.emplace("EXIF", failure);
    if (!xmp_fault.empty()) metadata.damage.emplace("XMP", xmp_fault);
  }
  if (parts && metadata.iptc.empty() && std::any_of(parts->begin(), parts->end(), StatesIptc)) {
    metadata.damage.emplace("IPTC", "it has no records");
  }
  return metadata;
}

}  // namespace lumvik::metadata
