// RAW files made in memory from a picture, for tests that need LibRaw's own decoders at any size.
#ifndef LUMVIK_TESTS_SUPPORT_RAW_WRITER_H_
#define LUMVIK_TESTS_SUPPORT_RAW_WRITER_H_

#include <array>
#include <cstdint>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "support/tiff_writer.h"

namespace lumvik::test {

enum class RawFormat {
  kArwCompressed,    // Sony, lossy, one byte a pixel
  kArwUncompressed,  // Sony, 14 bits in 16
  kDng,              // uncompressed, 16 bits
};
enum class RawPreview {
  kNone,
  kJpeg,
  kBitmap,  // DNG only
};

struct RawOptions {
  RawFormat format = RawFormat::kArwCompressed;
  RawPreview preview = RawPreview::kJpeg;
  int orientation = 1;  // EXIF code: how the recorded picture is to be turned for looking at it
  std::string make;     // empty: "SONY", for DNG "Testbench"
  std::string model;    // empty: "ILCE-7M3", for DNG "Bayer 14"
  uint16_t iso = 100;
  Rational exposure_time{1, 250};
  Rational f_number{8, 1};
  Rational focal_length{35, 1};
  std::string datetime = "2021:06:15 10:20:30";

  // What balances red, green and blue. LibRaw's cam_mul has them times 1024 (rounded, green again in the
  // fourth place) from an ARW, as they are (fourth place 0) from a DNG, 0, 1, 0, 0 from a monochrome DNG,
  // which does not record them.
  std::array<float, 3> multipliers{2.2f, 1.0f, 1.6f};
  bool monochrome = false;  // DNG only: luminance in one plane instead of a color mosaic

  std::vector<uint8_t> preview_jpeg;  // kJpeg: embedded as it is; empty: made from preview_picture
  cv::Mat preview_picture;            // type as the picture; empty: the picture, reduced
};

// `rgb` is the picture as the sensor lies: rows x columns x (red, green, blue), CV_8UC3 or CV_16UC3, with the
// sRGB curve. LibRaw opens files from 22 x 22 pixels. Developed with the camera's white balance in sRGB
// without automatic brightening the picture comes back, within demosaicing, in these limits:
// - LibRaw takes the brightest sample for white when it lies between 3/4 and all of the linear range: a
//   picture without anything white but with something nearly white (about 225 to 254 of 255) comes back
//   brighter.
// - ARW: LibRaw decides by the model how the camera sees colors. We follow it for our default model and
//   for models it does not know. Strong colors beyond that camera's range are clipped.
// Throws std::invalid_argument for a picture or a combination of options that cannot be written.
std::vector<uint8_t> MakeRawFile(const cv::Mat& rgb, const RawOptions& options = {});

// The same before it is serialized, for spoiling tags. Without a preview a DNG's tags are all in this first
// directory, except EXIF's.
TiffDirectory MakeRawDirectory(const cv::Mat& rgb, const RawOptions& options = {});

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_RAW_WRITER_H_
