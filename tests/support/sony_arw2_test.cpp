#include "support/sony_arw2.h"

#include <gtest/gtest.h>
#include <libraw/libraw.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "support/opened_raw.h"
#include "support/raw_writer.h"

namespace lumvik::test {
namespace {

// Linear samples of the whole sensor, including columns beyond the image.
std::vector<int> UnpackedSamples(const cv::Mat& picture, RawFormat format) {
  RawOptions options;
  options.format = format;
  OpenedRaw raw(MakeRawFile(picture, options));
  EXPECT_EQ(raw->unpack(), LIBRAW_SUCCESS);
  const ushort* samples = raw->imgdata.rawdata.raw_image;
  return {samples, samples + raw->imgdata.sizes.raw_width * raw->imgdata.sizes.raw_height};
}

int LargestDifference(const cv::Mat& picture) {
  const std::vector<int> compressed = UnpackedSamples(picture, RawFormat::kArwCompressed);
  const std::vector<int> exact = UnpackedSamples(picture, RawFormat::kArwUncompressed);
  int largest = 0;
  for (size_t i = 0; i < exact.size(); ++i) largest = std::max(largest, std::abs(compressed[i] - exact[i]));
  return largest;
}

// The curve's steps range from 2 in the shadows to 32 in the highlights: the error is at most half a step.
TEST(SonyArw2, FlatFieldsLoseHalfAStepOfTheCurve) {
  constexpr int kColumns = 70;  // not whole groups: the padding must not add contrast
  EXPECT_LE(LargestDifference(cv::Mat(40, kColumns, CV_8UC3, cv::Scalar::all(60))), 1);
  EXPECT_LE(LargestDifference(cv::Mat(40, kColumns, CV_8UC3, cv::Scalar::all(255))), 16);
}

// In a block of full contrast the steps are 16 codes wide: the error is half of one, 8 codes of 32, plus half
// a code of the curve.
constexpr int kLargestLoss = 8 * 32 + 16;

TEST(SonyArw2, NoiseLosesHalfAStepOfItsBlocks) {
  cv::Mat noise(40, 96, CV_8UC3);
  cv::RNG(11).fill(noise, cv::RNG::UNIFORM, 0, 256);
  EXPECT_LE(LargestDifference(noise), kLargestLoss);
}

// Blocks of only two levels, farther apart in each row.
TEST(SonyArw2, EveryContrastFitsItsBlocks) {
  cv::Mat stripes(2048, 64, CV_16UC3, cv::Scalar::all(0));
  for (int row = 0; row < stripes.rows; ++row) {
    for (int column = 0; column < stripes.cols; column += 4) {
      stripes(cv::Rect(column, row, 2, 1)).setTo(cv::Scalar::all(32 * row));
    }
  }
  EXPECT_LE(LargestDifference(stripes), kLargestLoss);
}

TEST(SonyArw2, RefusesBrokenGroups) {
  EXPECT_THROW(EncodeArw2(cv::Mat(1, 48, CV_16UC1)), cv::Exception);
}

}  // namespace
}  // namespace lumvik::test
