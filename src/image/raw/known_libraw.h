// The LibRaw versions whose results our own RAW code reproduces.
#ifndef LUMVIK_IMAGE_RAW_KNOWN_LIBRAW_H_
#define LUMVIK_IMAGE_RAW_KNOWN_LIBRAW_H_

#include <libraw/libraw.h>

#include <algorithm>
#include <array>

namespace lumvik {

// Our decoders and our demosaicing give the bytes of these versions. A version belongs here once the
// comparison with its own calls has passed.
inline constexpr std::array kKnownLibRaws = {LIBRAW_MAKE_VERSION(0, 20, 2)};

// Whether LibRaw is one of them, at compile time and, as the shared library can be replaced, at run time.
inline bool IsKnownLibRaw() {
  return LibRaw::versionNumber() == LIBRAW_VERSION &&
         std::find(kKnownLibRaws.begin(), kKnownLibRaws.end(), LIBRAW_VERSION) != kKnownLibRaws.end();
}

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_KNOWN_LIBRAW_H_
