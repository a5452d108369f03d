#include "files/jpeg_segments.h"

#include "files/byte_reading.h"

namespace lumvik::host {
namespace {

constexpr std::uint64_t kJpegMark = 0xFF;
constexpr std::uint64_t kJpegStartOfImage = 0xFFD8;
constexpr std::uint8_t kJpegStartOfScan = 0xDA;
constexpr std::uint8_t kJpegEndOfImage = 0xD9;

}  // namespace

std::vector<JpegSegment> JpegSegments(std::string_view jpeg) {
  std::vector<JpegSegment> segments;
  if (NumberAt(jpeg, 0, 2, ByteOrder::kBig) != kJpegStartOfImage) return segments;
  std::uint64_t offset = 2;
  while (NumberAt(jpeg, offset, 1, ByteOrder::kBig) == kJpegMark) {
    // Any number of fill bytes may precede a marker.
    if (NumberAt(jpeg, offset + 1, 1, ByteOrder::kBig) == kJpegMark) {
      ++offset;
      continue;
    }
    const auto marker = NumberAt(jpeg, offset + 1, 1, ByteOrder::kBig);
    const auto length = NumberAt(jpeg, offset + 2, 2, ByteOrder::kBig);
    if (!marker || !length || *length < 2) break;
    if (*marker == kJpegStartOfScan || *marker == kJpegEndOfImage) break;
    const std::string_view payload = PartOf(jpeg, offset + 4, *length - 2);
    if (payload.size() != *length - 2) break;
    offset += 2 + *length;
    segments.push_back({static_cast<std::uint8_t>(*marker), payload, offset});
  }
  return segments;
}

}  // namespace lumvik::host
