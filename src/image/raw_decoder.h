// Decoding camera RAW files with LibRaw.
#ifndef LUMVIK_IMAGE_RAW_DECODER_H_
#define LUMVIK_IMAGE_RAW_DECODER_H_

#include <array>
#include <string>

#include "image/image_buffer.h"

namespace lumvik {

// Whose code turned the sensor's samples into the image: ours, tile by tile, or LibRaw's. Both give the same
// bytes.
enum class RawDeveloper { kTiles, kLibRaw };

// A context's last RAW decode. Empty once an ordinary image has been loaded.
struct DecodedImage {
  ImageBuffer image;  // gamma-encoded sRGB after the base curve, at working size
  int width = 0;      // of `image`, in pixels
  int height = 0;
  float iso_speed = 0;
  float shutter = 0;    // seconds
  float aperture = 0;   // f-number
  float focal_len = 0;  // millimeters
  char make[64] = {};
  char model[64] = {};
  std::array<float, 4> cam_mul = {1, 1, 1, 1};  // as-shot white-balance multipliers
  int orientation = 0;                          // LibRaw's flip code
  std::array<std::array<float, 4>, 3> rgb_cam = {};
  RawDeveloper developer = RawDeveloper::kLibRaw;
  std::string path;   // of the last attempt
  std::string error;  // of the last attempt
};

// Quality levels of a decode, named by the size requested from LibRaw.
enum RawQuality { kRawFull = 1, kRawHalf = 2, kRawQuarter = 4 };

// Decodes the file into `decoded`: camera white balance, sRGB primaries and transfer curve, AHD demosaicing,
// base curve, long side at most 2000 pixels (about half of that for kRawQuarter). `quality` is 1..4. On
// failure returns false and changes only `path` and `error`.
bool DecodeRaw(const std::string& path, int quality, DecodedImage& decoded);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_DECODER_H_
