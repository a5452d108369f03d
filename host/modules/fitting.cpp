#include "modules/fitting.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <new>

namespace lumvik::metadata {
namespace {

// A segment has 65533 bytes, of which the headers and exiv2's own margin take some.
constexpr std::size_t kMaxExif = 65000;
constexpr std::size_t kMaxXmp = 57000;  // leaves room for a mark of the host
constexpr std::size_t kExifEntry = 12;  // in a directory

std::size_t SizeOf(const Exiv2::ExifData& exif) {
  std::size_t size = 0;
  for (const auto& tag : exif) size += kExifEntry + static_cast<std::size_t>(tag.size());
  return size;
}

std::size_t SizeOf(const Exiv2::XmpData& xmp) {
  std::string packet;
  Exiv2::XmpParser::encode(packet, xmp,
                           Exiv2::XmpParser::useCompactFormat | Exiv2::XmpParser::omitAllFormatting);
  return packet.size();
}

template <typename Data>
void Fit(Data& data, std::size_t limit, const std::string& protected_key, std::vector<std::string>& removed) {
  while (!data.empty() && SizeOf(data) > limit) {
    const auto weight = [&](const auto& entry) {
      return entry.key() == protected_key ? std::size_t{0} : static_cast<std::size_t>(entry.size());
    };
    const auto longest = std::max_element(
        data.begin(), data.end(), [&](const auto& a, const auto& b) { return weight(a) < weight(b); });
    if (weight(*longest) == 0) return;
    removed.push_back(longest->key());
    data.erase(longest);
  }
}

// Whether `encode` succeeds. Lack of memory is not the fault of the metadata.
template <typename Encode>
bool CanEncode(const Encode& encode) {
  try {
    return encode();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace

std::vector<std::string> RemoveUnwritable(KeptMetadata& metadata) {
  std::vector<std::string> removed;
  const auto encode_exif = [&] {
    Exiv2::Blob blob;
    Exiv2::ExifParser::encode(blob, Exiv2::littleEndian, metadata.exif);
    return true;
  };
  const auto encode_iptc = [&] {
    Exiv2::IptcParser::encode(metadata.iptc);
    return true;
  };
  const auto encode_xmp = [&] {
    std::string packet;
    return Exiv2::XmpParser::encode(packet, metadata.xmp) == 0;
  };
  if (!metadata.exif.empty() && !CanEncode(encode_exif)) {
    metadata.exif.clear();
    removed.emplace_back("EXIF");
  }
  if (!metadata.iptc.empty() && !CanEncode(encode_iptc)) {
    metadata.iptc.clear();
    removed.emplace_back("IPTC");
  }
  if (!metadata.xmp.empty() && !CanEncode(encode_xmp)) {
    metadata.xmp.clear();
    removed.emplace_back("XMP");
  }
  return removed;
}

std::vector<std::string> RemoveTooLong(KeptMetadata& metadata, ImageKind kind, bool copyright) {
  std::vector<std::string> removed;
  if (kind != ImageKind::kTiff) Fit(metadata.exif, kMaxExif, copyright ? kExifCopyright : "", removed);
  if (kind == ImageKind::kJpeg) Fit(metadata.xmp, kMaxXmp, copyright ? kXmpCopyright : "", removed);
  return removed;
}

}  // namespace lumvik::metadata
