// The metadata segments of JPEG files.
#ifndef LUMVIK_HOST_FILES_JPEG_METADATA_H_
#define LUMVIK_HOST_FILES_JPEG_METADATA_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lumvik::host {

// The EXIF code in the header of a JPEG, 1 to 8; nothing if it states none.
std::optional<std::int32_t> OrientationOfJpeg(std::string_view jpeg);

// The JPEG with nothing but what decoders and color management need: image data, JFIF and Adobe headers, and
// the color profile.
std::string WithoutMetadata(std::string_view jpeg);

// A JPEG without metadata with an EXIF block that states the orientation alone.
std::string WithOrientation(std::string jpeg, std::int32_t orientation);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_JPEG_METADATA_H_
