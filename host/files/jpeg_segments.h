// The segments of a JPEG's header.
#ifndef LUMVIK_HOST_FILES_JPEG_SEGMENTS_H_
#define LUMVIK_HOST_FILES_JPEG_SEGMENTS_H_

#include <cstdint>
#include <string_view>
#include <vector>

namespace lumvik::host {

inline constexpr std::uint8_t kJpegApp0 = 0xE0;
inline constexpr std::uint8_t kJpegApp1 = 0xE1;
inline constexpr std::uint8_t kJpegApp2 = 0xE2;
inline constexpr std::size_t kMaxJpegPayload = 65533;

struct JpegSegment {
  std::uint8_t marker = 0;  // the byte after 0xFF
  std::string_view payload;
  std::uint64_t end = 0;  // the offset after the segment
};

// Those between the start marker and the image data, as far as they are complete.
std::vector<JpegSegment> JpegSegments(std::string_view jpeg);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_JPEG_SEGMENTS_H_
