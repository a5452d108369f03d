#include "support/bayer_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "support/bayer_samples.h"
#include "support/opened_raw.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

using ::testing::ElementsAre;
using ::testing::FloatEq;

cv::Mat UnpackedSamples(OpenedRaw& raw) {
  EXPECT_EQ(raw->unpack(), LIBRAW_SUCCESS);
  const libraw_image_sizes_t& sizes = raw->imgdata.sizes;
  return cv::Mat(sizes.raw_height, sizes.raw_width, CV_16UC1, raw->imgdata.rawdata.raw_image, sizes.raw_pitch)
      .clone();
}

TEST(BayerFile, LibRawReadsTheSamplesAndMargins) {
  BayerFile file;
  file.size = {51, 37};
  file.margins = {2, 4, 5, 7};
  for (int content = 0; content < kBayerContents; ++content) {
    file.content = static_cast<BayerContent>(content);
    OpenedRaw raw(MakeBayerFile(file));
    EXPECT_TRUE(SameBytes(UnpackedSamples(raw), BayerSamples(file))) << file;
    const libraw_image_sizes_t& sizes = raw->imgdata.sizes;
    EXPECT_THAT((std::vector<int>{sizes.width, sizes.height, sizes.top_margin, sizes.left_margin}),
                ElementsAre(51, 37, 2, 4));
  }
}

TEST(BayerFile, LibRawRoundsOddMarginsUp) {
  BayerFile file;
  file.size = {51, 37};
  file.margins = {3, 5, 0, 0};
  OpenedRaw raw(MakeBayerFile(file));
  const libraw_image_sizes_t& sizes = raw->imgdata.sizes;
  EXPECT_THAT((std::vector<int>{sizes.width, sizes.height, sizes.top_margin, sizes.left_margin}),
              ElementsAre(50, 36, 4, 6));
}

TEST(BayerFile, LibRawReadsTheLevels) {
  BayerFile file;
  file.black_repeat = {2, 4};
  file.black = {10, 20, 30, 40, 50, 60, 70, 80};
  file.white = 1023;
  file.neutral = {0.5, 1, 0.25};
  file.matrix = CommonColorMatrix();
  OpenedRaw raw(MakeBayerFile(file));
  const libraw_colordata_t& color = raw->imgdata.color;
  EXPECT_EQ(color.maximum, 1023U);
  EXPECT_THAT(std::vector<unsigned>(color.cblack + 4, color.cblack + 14),
              ElementsAre(4, 2, 10, 20, 30, 40, 50, 60, 70, 80));
  EXPECT_THAT(color.cam_mul, ElementsAre(FloatEq(2), FloatEq(1), FloatEq(4), 0));
  EXPECT_NEAR(color.dng_color[0].colormatrix[1][1], 1.3162F, 1e-6);
}

TEST(BayerFile, LibRawReadsThePatternAndOrientation) {
  const struct {
    std::vector<uint8_t> pattern;
    const char* colors;
  } patterns[] = {
      {{0, 1, 1, 2}, "RGGB"}, {{1, 0, 2, 1}, "GRBG"}, {{1, 2, 0, 1}, "GBRG"}, {{2, 1, 1, 0}, "BGGR"}};
  constexpr int kFlips[] = {0, 1, 3, 2, 4, 6, 7, 5};
  for (int orientation = 1; orientation <= 8; ++orientation) {
    BayerFile file;
    file.orientation = orientation;
    file.pattern = patterns[orientation % 4].pattern;
    OpenedRaw raw(MakeBayerFile(file));
    EXPECT_EQ(raw->imgdata.sizes.flip, kFlips[orientation - 1]) << orientation;
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ("RGBG"[raw->COLOR(i / 2, i % 2)], patterns[orientation % 4].colors[i]) << orientation;
    }
  }
}

TEST(BayerFile, WhatIsAbsentIsNotRead) {
  BayerFile file;
  file.neutral.clear();
  OpenedRaw raw(MakeBayerFile(file));
  EXPECT_EQ(raw->imgdata.color.cam_mul[0], 0.0F);
  EXPECT_EQ(raw->imgdata.color.dng_color[0].colormatrix[1][1], 0.0F);
}

TEST(BayerFile, SonyFiles) {
  BayerFile file;
  file.black = {500, 510, 520, 530};
  file.size = {90, 32};
  file.margins.right = 6;
  for (const RawFormat format : {RawFormat::kArwCompressed, RawFormat::kArwUncompressed}) {
    file.format = format;
    OpenedRaw raw(MakeBayerFile(file));
    EXPECT_EQ(raw.DecoderName(),
              format == RawFormat::kArwCompressed ? "sony_arw2_load_raw()" : "unpacked_load_raw()");
    EXPECT_THAT(raw->imgdata.color.cam_mul, ElementsAre(2253, 1024, 1638, 1030));
    EXPECT_EQ(raw->imgdata.color.black, 500U);
    EXPECT_THAT(std::vector<unsigned>(raw->imgdata.color.cblack, raw->imgdata.color.cblack + 4),
                ElementsAre(0, 10, 30, 20));
    EXPECT_EQ(raw->imgdata.sizes.width, 90);
    const cv::Mat samples = UnpackedSamples(raw);
    EXPECT_LT(cv::norm(samples, BayerSamples(file), cv::NORM_INF), 200) << file;
  }
}

}  // namespace
}  // namespace lumvik::test
