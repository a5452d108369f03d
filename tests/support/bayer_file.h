// Makes RAW files of Bayer sensors from a description, for comparing decoders over all that such a file can
// state.
#ifndef LUMVIK_TESTS_SUPPORT_BAYER_FILE_H_
#define LUMVIK_TESTS_SUPPORT_BAYER_FILE_H_

#include <array>
#include <cstdint>
#include <opencv2/core.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "support/raw_writer.h"
#include "support/tiff_writer.h"

namespace lumvik::test {

enum class BayerContent {
  kPhotograph,
  kGradients,
  kNoise,         // up to a tenth above white
  kDimNoise,      // up to half of white or more: LibRaw may take its maximum for white
  kSixteenBits,   // noise over all codes
  kPrimaries,     // squares of 1 to 4 pixels, each color black or white in each
  kCheckerboard,  // black and white squares of 1 to 3 pixels
  kHotPixels,     // white and black pixels on dark gray
  kBlack,         // around the black level
  kSaturated,     // white and above
};
inline constexpr int kBayerContents = 10;

// LibRaw rounds the top and left margins up to even numbers, at the cost of the image.
struct BayerMargins {
  int top = 0;
  int left = 0;
  int bottom = 0;
  int right = 0;
};

struct BayerFile {
  // A compressed ARW has rows of whole groups of 32 columns, margins included. LibRaw takes an ARW's color
  // matrix and white level from its camera table.
  RawFormat format = RawFormat::kDng;
  cv::Size size{64, 48};  // without the margins; LibRaw requires at least 22 x 22
  BayerMargins margins;
  std::vector<uint8_t> pattern{0, 1, 1, 2};  // of the colors red, green, blue, two per row
  int orientation = 1;                       // EXIF code
  cv::Size black_repeat{1, 1};
  std::vector<double> black{0};  // by rows; four for an ARW
  int white = 65535;
  std::vector<double> neutral{0.45, 1, 0.625};  // empty: not stated
  std::vector<double> matrix;                   // from XYZ to the camera's colors, by rows; empty: not stated
  std::array<uint16_t, 4> arw_levels{2253, 1024, 1030, 1638};  // an ARW's white balance: red, greens, blue
  BayerContent content = BayerContent::kPhotograph;
  uint64_t seed = 1;
};

// A matrix of a common camera, for BayerFile::matrix.
std::vector<double> CommonColorMatrix();

// The file's only directory, for changing tags.
TiffDirectory MakeBayerDirectory(const BayerFile& description);
std::vector<uint8_t> MakeBayerFile(const BayerFile& description);

// For the messages of tests.
std::ostream& operator<<(std::ostream& out, const BayerFile& description);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_BAYER_FILE_H_
