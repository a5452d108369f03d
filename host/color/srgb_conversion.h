// Conversion of images with an embedded ICC profile to sRGB.
#ifndef LUMVIK_HOST_COLOR_SRGB_CONVERSION_H_
#define LUMVIK_HOST_COLOR_SRGB_CONVERSION_H_

#include <opencv2/core.hpp>
#include <string>

#include "lumvik_host.h"

namespace lumvik::host {

struct SrgbConversion {
  std::string profile;  // the description of the embedded profile; "" without one
  // An image file with the pixels in sRGB, upright and in full size; "" if there is nothing to convert. Its
  // extension is kConvertedExtension.
  std::string converted;
  std::string warning;  // why the embedded profile was not used; "" if it was, or without one
};

inline constexpr char kConvertedExtension[] = ".bmp";

// Reads an image of the given format, which is not a RAW file. An unusable profile counts as none. Throws
// Failure.
SrgbConversion ConvertToSrgb(const std::string& path, lumvik_host_format format);

// The pixels of an image file in memory as such a photograph has them: CV_8UC3 of blue, green and red in
// sRGB, upright. Empty if it cannot be decoded.
cv::Mat DecodeToSrgb(const std::string& image, lumvik_host_format format);

// Whether an image states colors other than sRGB, be it by a profile or by EXIF.
bool StatesOtherColors(const std::string& image, lumvik_host_format format);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_COLOR_SRGB_CONVERSION_H_
