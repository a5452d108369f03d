// The scale of 16-bit samples.
#ifndef LUMVIK_BASE_CODE_SCALE_H_
#define LUMVIK_BASE_CODE_SCALE_H_

namespace lumvik {

// Full scale of a 16-bit sample.
inline constexpr float kMaxCode = 65535.0F;

// A sample times this is 0..1.
inline constexpr double kExactUnitPerCode = 1.0 / 65535.0;
inline constexpr auto kUnitPerCode = static_cast<float>(kExactUnitPerCode);

}  // namespace lumvik

#endif  // LUMVIK_BASE_CODE_SCALE_H_
