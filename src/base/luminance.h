// The engine's definition of luminance.
#ifndef LUMVIK_BASE_LUMINANCE_H_
#define LUMVIK_BASE_LUMINANCE_H_

namespace lumvik {

// Rec. 709 luma (ITU-R BT.709-6, item 3.2) of gamma-encoded values in 0..1.
inline float Luminance(float red, float green, float blue) {
  return 0.7152F * green + 0.2126F * red + 0.0722F * blue;
}

}  // namespace lumvik

#endif  // LUMVIK_BASE_LUMINANCE_H_
