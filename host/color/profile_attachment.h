// Embedding a color profile in an image file.
#ifndef LUMVIK_HOST_COLOR_PROFILE_ATTACHMENT_H_
#define LUMVIK_HOST_COLOR_PROFILE_ATTACHMENT_H_

#include <cstddef>
#include <string>
#include <string_view>

#include "lumvik_host.h"

namespace lumvik::host {

// The size of the largest ICC profile that fits in a file of the format.
std::size_t MaxProfileBytes(lumvik_host_format format);

// The JPEG, PNG or (little-endian) TIFF with the ICC profile. It must not have one.
// The profile must fit.
std::string AttachProfile(std::string image, lumvik_host_format format, std::string_view icc);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_COLOR_PROFILE_ATTACHMENT_H_
