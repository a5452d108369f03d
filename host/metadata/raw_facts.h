// What LibRaw knows of a RAW file beyond what the engine reports.
#ifndef LUMVIK_HOST_METADATA_RAW_FACTS_H_
#define LUMVIK_HOST_METADATA_RAW_FACTS_H_

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "color/correlated_temperature.h"
#include "lumvik.h"

namespace lumvik::host {

struct RawFacts {
  ExifInfo basic{};        // what the engine reports for a file without an EXIF block that libexif can read
  std::int32_t width = 0;  // pixels at full size, as stored
  std::int32_t height = 0;
  std::int32_t orientation = 1;  // EXIF code, 1 to 8
  std::string lens;              // "" if unknown
  std::string datetime;          // "2024:05:31 18:20:00", as stored; "" if unknown
  double latitude = std::numeric_limits<double>::quiet_NaN();   // degrees, south negative; NaN if unknown
  double longitude = std::numeric_limits<double>::quiet_NaN();  // degrees, west negative; NaN if unknown
  WhitePoint as_shot;
};

// Nothing for a file that LibRaw rejects.
std::optional<RawFacts> ReadRawFacts(const std::string& path);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_METADATA_RAW_FACTS_H_
