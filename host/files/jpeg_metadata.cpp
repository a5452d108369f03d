#include "files/jpeg_metadata.h"

#include <vector>

#include "files/byte_reading.h"
#include "files/jpeg_segments.h"
#include "files/tiff_reading.h"

namespace lumvik::host {
namespace {

constexpr std::string_view kExifHeader = {"Exif\0\0", 6};
constexpr std::uint64_t kSegmentHeader = 4;
constexpr std::uint64_t kStartMarker = 2;

bool IsExif(const JpegSegment& segment) {
  return segment.marker == kJpegApp1 && PartOf(segment.payload, 0, kExifHeader.size()) == kExifHeader;
}

bool IsMetadata(const JpegSegment& segment) {
  constexpr std::uint8_t kApp14 = 0xEE;  // Adobe's, with the color transform
  constexpr std::uint8_t kLastApp = 0xEF;
  constexpr std::uint8_t kComment = 0xFE;
  constexpr std::string_view kProfile = {"ICC_PROFILE\0", 12};
  if (segment.marker == kComment) return true;
  if (segment.marker < kJpegApp0 || segment.marker > kLastApp) return false;
  if (segment.marker == kJpegApp2) return PartOf(segment.payload, 0, kProfile.size()) != kProfile;
  return segment.marker != kJpegApp0 && segment.marker != kApp14;
}

}  // namespace

std::optional<std::int32_t> OrientationOfJpeg(std::string_view jpeg) {
  constexpr std::uint16_t kOrientationTag = 0x0112;
  constexpr std::uint64_t kLastOrientation = 8;
  for (const JpegSegment& segment : JpegSegments(jpeg)) {
    if (!IsExif(segment)) continue;
    const TiffReader exif(segment.payload.substr(kExifHeader.size()));
    if (exif.Directories().empty()) return std::nullopt;
    const TiffEntry* const entry = exif.Directories().front().Find(kOrientationTag);
    const auto numbers = entry == nullptr ? std::vector<std::uint64_t>() : exif.Numbers(*entry);
    if (numbers.empty() || numbers[0] < 1 || numbers[0] > kLastOrientation) return std::nullopt;
    return static_cast<std::int32_t>(numbers[0]);
  }
  return std::nullopt;
}

std::string WithoutMetadata(std::string_view jpeg) {
  std::string kept(PartOf(jpeg, 0, kStartMarker));
  std::uint64_t end = kStartMarker;
  for (const JpegSegment& segment : JpegSegments(jpeg)) {
    const std::uint64_t size = kSegmentHeader + segment.payload.size();
    if (!IsMetadata(segment)) kept += PartOf(jpeg, segment.end - size, size);
    end = segment.end;
  }
  return kept += jpeg.substr(static_cast<std::size_t>(end));
}

std::string WithOrientation(std::string jpeg, std::int32_t orientation) {
  // A big-endian TIFF whose only entry is the orientation, a SHORT.
  std::string segment(
      "\xFF\xE1\0\x22"
      "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0",
      36);
  constexpr std::size_t kValueAt = 29;
  segment[kValueAt] = static_cast<char>(orientation);
  // After the JFIF header, which comes first.
  const std::vector<JpegSegment> segments = JpegSegments(jpeg);
  const bool has_jfif = !segments.empty() && segments.front().marker == kJpegApp0;
  return jpeg.insert(static_cast<std::size_t>(has_jfif ? segments.front().end : kStartMarker), segment);
}

}  // namespace lumvik::host
