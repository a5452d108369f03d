// Encoding of PNG files.
#ifndef LUMVIK_HOST_SAVE_PNG_ENCODING_H_
#define LUMVIK_HOST_SAVE_PNG_ENCODING_H_

#include <cstdint>
#include <string>

namespace lumvik::host {

// The bytes of an 8-bit PNG of 1 (gray), 3 (RGB) or 4 (RGBA) channels, rows from top to bottom without
// padding. Throws Failure.
std::string EncodePng(const std::uint8_t* pixels, int width, int height, int channels);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SAVE_PNG_ENCODING_H_
