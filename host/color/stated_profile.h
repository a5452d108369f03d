// The colors that images state, be it by a profile or by EXIF.
#ifndef LUMVIK_HOST_COLOR_STATED_PROFILE_H_
#define LUMVIK_HOST_COLOR_STATED_PROFILE_H_

#include <optional>
#include <string>

#include "color/color_profile.h"
#include "lumvik_host.h"

namespace lumvik::host {

struct StatedProfile {
  std::optional<ColorProfile> profile;  // for RGB or gray images; none if there is none that can be used
  std::string icc;                      // its bytes, as embedded
  std::string description;              // also of a profile for other images; "" without one
  std::string warning;                  // why an embedded profile cannot be used
};

// Of an image of the given format, which is not a RAW file. An unusable profile counts as none.
StatedProfile ProfileStatedBy(const std::string& image, lumvik_host_format format);

// What the pixels of a photograph mean.
struct PixelColors {
  std::string icc;  // a profile for RGB images
  bool is_srgb = true;
};

const PixelColors& SrgbColors();

// The colors of an image whose pixels are not converted, decoded as RGB.
struct KeptColors {
  PixelColors colors;  // sRGB if no profile fits
  std::string description;
  std::string warning;
};
KeptColors ColorsOf(const std::string& path, lumvik_host_format format);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_COLOR_STATED_PROFILE_H_
