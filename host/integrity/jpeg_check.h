// Finds damage in JPEG files.
#ifndef LUMVIK_HOST_INTEGRITY_JPEG_CHECK_H_
#define LUMVIK_HOST_INTEGRITY_JPEG_CHECK_H_

#include <optional>
#include <string_view>

#include "integrity/damage.h"

namespace lumvik::host {

std::optional<Damage> CheckJpeg(std::string_view jpeg);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_INTEGRITY_JPEG_CHECK_H_
