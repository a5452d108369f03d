// Embedding a color profile in an image file.
#ifndef LUMVIK_HOST_COLOR_PROFILE_ATTACHMENT_H_
#define LUMVIK_HOST_COLOR_PROFILE_ATTACHMENT_H_

#include <string>
#include <string_view>

#include "lumvik_host.h"

namespace lumvik::host {

// The JPEG, PNG or (little-endian) TIFF with the ICC profile. It must not have one.
std::string AttachProfile(std::string image, lumvik_host_format format, std::string_view icc);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_COLOR_PROFILE_ATTACHMENT_H_
