// Makes RAW files in memory from an image, for tests that need LibRaw's decoders at any size.
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
  kArwCompressed,    // Sony, lossy, one byte per pixel
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
  int orientation = 1;  // EXIF code
  std::string make;     // empty: "SONY", for DNG "Testbench"
  std::string model;    // empty: "ILCE-7M3", for DNG "Bayer 14"
  uint16_t iso = 100;
  Rational exposure_time{1, 250};
  Rational f_number{8, 1};
  Rational focal_length{35, 1};
  std::string datetime = "2021:06:15 10:20:30";

  // As-shot white balance for red, green and blue. LibRaw's cam_mul is these times 1024, rounded, with green
  // repeated fourth, for an ARW; these and 0 for a DNG; 0, 1, 0, 0 for a monochrome DNG, which does not store
  // them.
  std::array<float, 3> multipliers{2.2f, 1.0f, 1.6f};
  bool monochrome = false;  // DNG only: luminance in one plane instead of a color mosaic

  std::vector<uint8_t> preview_jpeg;  // kJpeg: embedded unchanged; empty: made from preview_picture
  cv::Mat preview_picture;            // of the image's type; empty: the image, reduced
};

// `rgb` is the image in sensor orientation: rows x columns x (red, green, blue), CV_8UC3 or CV_16UC3, sRGB
// curve. LibRaw requires at least 22 x 22 pixels. Developed in sRGB with the camera's white balance and
// without automatic brightening, the file gives the image back up to demosaicing errors, with these limits:
// - LibRaw takes the brightest sample for white when it is above 3/4 of the linear range: an image with
// nearly white but
//   no white pixels (about 225 to 254 of 255) comes back brighter.
// - ARW: LibRaw chooses the color matrix by model. We apply it for our default model and for unknown models.
// Strong
//   colors beyond that camera's gamut are clipped.
// Throws std::invalid_argument for an image or a combination of options that cannot be written.
std::vector<uint8_t> MakeRawFile(const cv::Mat& rgb, const RawOptions& options = {});

// The same before serialization, for changing tags. Without a preview, all of a DNG's tags but EXIF's are in
// this first directory.
TiffDirectory MakeRawDirectory(const cv::Mat& rgb, const RawOptions& options = {});

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_RAW_WRITER_H_
