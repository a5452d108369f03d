#include "color/embedded_profile.h"

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include "files/byte_reading.h"
#include "files/jpeg_segments.h"
#include "files/png_chunks.h"
#include "files/tiff_reading.h"

namespace lumvik::host {
namespace {

bool IsJpegProfile(const JpegSegment& segment) {
  return segment.marker == kJpegApp2 &&
         PartOf(segment.payload, 0, kJpegProfileMark.size()) == kJpegProfileMark;
}

std::string JpegProfile(std::string_view jpeg) {
  std::map<std::uint64_t, std::string_view> parts;  // by number, from 1
  std::uint64_t count = 0;
  for (const JpegSegment& segment : JpegSegments(jpeg)) {
    if (!IsJpegProfile(segment)) continue;
    const auto number = NumberAt(segment.payload, kJpegProfileMark.size(), 1, ByteOrder::kBig);
    count = NumberAt(segment.payload, kJpegProfileMark.size() + 1, 1, ByteOrder::kBig).value_or(0);
    if (number)
      parts.emplace(*number, PartOf(segment.payload, kJpegProfileMark.size() + 2, kMaxProfileBytes));
  }
  std::string profile;
  for (std::uint64_t number = 1; number <= count; ++number) {
    const auto part = parts.find(number);
    if (part == parts.end()) return {};
    profile += part->second;
  }
  return profile;
}

std::string PngProfile(std::string_view png) {
  for (const PngChunk& chunk : PngChunks(png)) {
    if (chunk.type != "iCCP") continue;
    const std::size_t name_end = chunk.data.find('\0');
    if (name_end == std::string_view::npos) return {};
    return InflatePng(PartOf(chunk.data, name_end + 2, kMaxProfileBytes),
                      kMaxProfileBytes);  // after the method
  }
  return {};
}

std::string TiffProfile(std::string_view tiff) {
  const TiffReader reader(tiff);
  if (reader.Directories().empty()) return {};
  const TiffEntry* const entry = reader.Directories().front().Find(kTiffProfileTag);
  return entry == nullptr ? std::string() : std::string(reader.Bytes(*entry).substr(0, kMaxProfileBytes));
}

std::optional<std::string> WebpProfile(std::string_view webp) {
  constexpr std::uint64_t kFirstChunk = 12;
  constexpr std::uint64_t kChunkHeader = 8;
  std::uint64_t offset = kFirstChunk;
  while (const auto size = NumberAt(webp, offset + 4, 4, ByteOrder::kLittle)) {
    if (PartOf(webp, offset, 4) == "ICCP") {
      const std::string_view profile = PartOf(webp, offset + kChunkHeader, *size);
      return std::string(profile.size() == *size ? profile : std::string_view());
    }
    offset += kChunkHeader + *size + *size % 2;
  }
  return std::nullopt;
}

bool HoldsAdobeRgb(std::string_view exif) {
  constexpr std::uint16_t kColorSpace = 0xA001;
  constexpr std::uint16_t kInteroperabilityIndex = 0x0001;
  constexpr std::uint64_t kUncalibrated = 0xFFFF;
  bool is_uncalibrated = false;
  bool is_adobe = false;
  const TiffReader reader(exif);
  for (const TiffIfd& directory : reader.Directories()) {
    const TiffEntry* const space = directory.Find(kColorSpace);
    const TiffEntry* const index = directory.Find(kInteroperabilityIndex);
    if (space != nullptr) is_uncalibrated |= reader.Numbers(*space) == std::vector{kUncalibrated};
    if (index != nullptr) is_adobe |= PartOf(reader.Bytes(*index), 0, 3) == "R03";
  }
  return is_uncalibrated && is_adobe;
}

}  // namespace

std::string FindIccProfile(std::string_view image, lumvik_host_format format) {
  switch (format) {
    case LUMVIK_HOST_FORMAT_JPEG:
      return JpegProfile(image);
    case LUMVIK_HOST_FORMAT_PNG:
      return PngProfile(image);
    case LUMVIK_HOST_FORMAT_TIFF:
      return TiffProfile(image);
    case LUMVIK_HOST_FORMAT_WEBP:
      return WebpProfile(image).value_or("");
    default:
      return {};
  }
}

bool HasIccProfile(std::string_view image, lumvik_host_format format) {
  switch (format) {
    case LUMVIK_HOST_FORMAT_JPEG: {
      const std::vector<JpegSegment> segments = JpegSegments(image);
      return std::any_of(segments.begin(), segments.end(), IsJpegProfile);
    }
    case LUMVIK_HOST_FORMAT_PNG: {
      const std::vector<PngChunk> chunks = PngChunks(image);
      return std::any_of(chunks.begin(), chunks.end(),
                         [](const PngChunk& chunk) { return chunk.type == "iCCP"; });
    }
    case LUMVIK_HOST_FORMAT_TIFF: {
      const TiffReader reader(image);
      return !reader.Directories().empty() && reader.Directories().front().Find(kTiffProfileTag) != nullptr;
    }
    case LUMVIK_HOST_FORMAT_WEBP:
      return WebpProfile(image).has_value();
    default:
      return false;
  }
}

bool StatesAdobeRgb(std::string_view jpeg) {
  constexpr std::string_view kExifMark = {"Exif\0\0", 6};
  for (const JpegSegment& segment : JpegSegments(jpeg)) {
    if (segment.marker != kJpegApp1 || PartOf(segment.payload, 0, kExifMark.size()) != kExifMark) continue;
    return HoldsAdobeRgb(segment.payload.substr(kExifMark.size()));
  }
  return false;
}

}  // namespace lumvik::host
