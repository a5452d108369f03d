// Color profiles in image files.
#ifndef LUMVIK_HOST_COLOR_EMBEDDED_PROFILE_H_
#define LUMVIK_HOST_COLOR_EMBEDDED_PROFILE_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "lumvik_host.h"

namespace lumvik::host {

// The prefix of a JPEG's APP2 segment with a part of a profile; its number and the number of parts follow.
inline constexpr std::string_view kJpegProfileMark = {"ICC_PROFILE\0", 12};

// Larger ones are cut off.
inline constexpr std::size_t kMaxProfileBytes = std::size_t{16} << 20;

inline constexpr std::uint16_t kTiffProfileTag = 34675;

// The ICC profile embedded in an image; "" without one, or if parts are missing or corrupt.
std::string FindIccProfile(std::string_view image, lumvik_host_format format);

// Whether an image has an ICC profile, usable or not.
bool HasIccProfile(std::string_view image, lumvik_host_format format);

// Whether a JPEG states by EXIF that its colors are those of Adobe RGB (1998), as cameras do without a
// profile (DCF 2.0, section 3.3).
bool StatesAdobeRgb(std::string_view jpeg);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_COLOR_EMBEDDED_PROFILE_H_
