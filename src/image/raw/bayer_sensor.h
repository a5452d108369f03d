// What LibRaw hands over of a Bayer sensor's photograph.
#ifndef LUMVIK_IMAGE_RAW_BAYER_SENSOR_H_
#define LUMVIK_IMAGE_RAW_BAYER_SENSOR_H_

#include <cstddef>
#include <cstdint>

namespace lumvik {

enum SensorColor { kRed, kGreen, kBlue };

// One of the four positions of the repeating 2 x 2 pattern.
struct BayerSite {
  SensorColor color = kGreen;
  uint16_t black = 0;    // subtracted from the samples, not below 0
  float multiplier = 0;  // white balance, and the white level scaled to 65535
};

// Rows times camera colors.
using ColorMatrix = float[3][3];

struct BayerSensor {
  const uint16_t* samples = nullptr;  // the visible area's first
  ptrdiff_t stride = 0;               // samples from row to row
  int width = 0;                      // of the visible area
  int height = 0;
  BayerSite sites[2][2] = {};         // by row and column, modulo 2
  ColorMatrix xyz_from_camera = {};   // 0..65535, relative to the white point
  ColorMatrix srgb_from_camera = {};  // linear, 0..65535
  const float* cube_root = nullptr;   // 65536 values: CIE L*a*b*'s f(t) at t = i / 65535
  int flip = 0;                       // LibRaw's code: see Orientation
};

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_BAYER_SENSOR_H_
