// Finds damage in BMP and WebP files.
#ifndef LUMVIK_HOST_INTEGRITY_IMAGE_CHECK_H_
#define LUMVIK_HOST_INTEGRITY_IMAGE_CHECK_H_

#include <optional>
#include <string_view>

#include "integrity/damage.h"

namespace lumvik::host {

std::optional<Damage> CheckBmp(std::string_view bmp);
std::optional<Damage> CheckWebp(std::string_view webp);

// Decodes an image with these flags of cv::imdecode.
std::optional<Damage> CheckDecodable(std::string_view image, int flags);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_INTEGRITY_IMAGE_CHECK_H_
