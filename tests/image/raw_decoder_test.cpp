#include "image/raw_decoder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <opencv2/imgproc.hpp>
#include <string>
#include <thread>

#include "image/base_curve.h"
#include "support/file_bytes.h"
#include "support/plain_raw_decode.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

using Rgba16 = cv::Vec<uint16_t, 4>;

const std::string kSample = LUMVIK_SAMPLES "/sample_small.ARW";

// Color ramps without white.
cv::Mat ColorRamps(int rows, int cols) {
  cv::Mat rgb(rows, cols, CV_8UC3);
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < cols; ++x) {
      rgb.at<cv::Vec3b>(y, x) =
          cv::Vec3b(static_cast<uint8_t>(30 + x * 180 / cols), static_cast<uint8_t>(40 + y * 150 / rows),
                    static_cast<uint8_t>(60 + (x / 7 + y / 5) % 100));
    }
  }
  return rgb;
}

std::vector<uint8_t> RawFile(const cv::Mat& rgb, RawFormat format) {
  RawOptions options;
  options.format = format;
  return MakeRawFile(rgb, options);
}

// Expects this image, opaque, and its size in the record.
void ExpectImage(const DecodedImage& decoded, const cv::Mat& rgb) {
  ASSERT_EQ(decoded.image.type(), CV_16UC4);
  EXPECT_EQ(decoded.image.size(), rgb.size());
  EXPECT_EQ(decoded.width, rgb.cols);
  EXPECT_EQ(decoded.height, rgb.rows);
  std::vector<cv::Mat> planes;
  cv::split(decoded.image, planes);
  EXPECT_EQ(cv::countNonZero(planes[3] != 65535), 0);
  planes.pop_back();
  cv::Mat colors;
  cv::merge(planes, colors);
  EXPECT_TRUE(SameBytes(colors, rgb));
}

class RawDecoder : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const std::vector<uint8_t>& bytes) const {
    return WriteBytes(dir_.File(name), bytes);
  }

  TempDir dir_;
};

class RawDecoderFiles : public ::testing::TestWithParam<std::string> {};

TEST_P(RawDecoderFiles, AreDevelopedAsStated) {
  for (int quality = 1; quality <= 4; ++quality) {
    SCOPED_TRACE(quality);
    DecodedImage decoded;
    ASSERT_TRUE(DecodeRaw(GetParam(), quality, decoded)) << decoded.error;
    ExpectImage(decoded, PlainDecode(GetParam(), quality).Image());
    EXPECT_EQ(decoded.path, GetParam());
    EXPECT_EQ(decoded.error, "");
  }
}

INSTANTIATE_TEST_SUITE_P(RawDecoder, RawDecoderFiles,
                         ::testing::Values(kSample, kTestData + "uncompressed.ARW",
                                           kTestData + "no_thumb.dng"),
                         [](const auto& file) { return fs::path(file.param).stem().string(); });

TEST_F(RawDecoder, LargeImagesAreReducedTo2000) {
  const std::string path = Write("a.dng", RawFile(ColorRamps(1400, 2101), RawFormat::kDng));
  for (const int quality : {1, 4}) {
    DecodedImage decoded;
    ASSERT_TRUE(DecodeRaw(path, quality, decoded)) << decoded.error;
    ExpectImage(decoded, PlainDecode(path, quality).Image());
    EXPECT_EQ(decoded.image.size(), quality == 1 ? cv::Size(2000, 1333) : cv::Size(525, 350));
  }
}

TEST_F(RawDecoder, ImagesOf2000KeepTheirSize) {
  for (const cv::Size size : {cv::Size(2000, 30), cv::Size(24, 2000)}) {
    DecodedImage decoded;
    ASSERT_TRUE(
        DecodeRaw(Write("a.dng", RawFile(ColorRamps(size.height, size.width), RawFormat::kDng)), 1, decoded));
    EXPECT_EQ(decoded.image.size(), size);
  }
}

TEST_F(RawDecoder, TwentyFourMegapixelsAtEveryQuality) {
  const std::string path = Write("a.ARW", RawFile(ColorRamps(4000, 6000), RawFormat::kArwCompressed));
  const cv::Size sizes[] = {{2000, 1333}, {2000, 1333}, {2000, 1333}, {1000, 667}};
  for (int quality = 1; quality <= 4; ++quality) {
    DecodedImage decoded;
    ASSERT_TRUE(DecodeRaw(path, quality, decoded)) << decoded.error;
    EXPECT_EQ(decoded.image.size(), sizes[quality - 1]) << quality;
    if (quality == 4) ExpectImage(decoded, PlainDecode(path, quality).Image());
  }
}

TEST_F(RawDecoder, QualitiesTwoAndThreeAreHalfTheSize) {
  const std::string path = Write("a.dng", RawFile(ColorRamps(45, 63), RawFormat::kDng));
  const cv::Size sizes[] = {{63, 45}, {32, 23}, {32, 23}, {16, 11}};
  for (int quality = 1; quality <= 4; ++quality) {
    DecodedImage decoded;
    ASSERT_TRUE(DecodeRaw(path, quality, decoded));
    EXPECT_EQ(decoded.image.size(), sizes[quality - 1]) << quality;
  }
}

TEST_F(RawDecoder, TheBaseCurveLiftsTheImage) {
  const cv::Mat gray(60, 80, CV_8UC3, cv::Scalar(128, 128, 128));
  for (const RawFormat format : {RawFormat::kArwCompressed, RawFormat::kArwUncompressed, RawFormat::kDng}) {
    DecodedImage decoded;
    ASSERT_TRUE(DecodeRaw(Write("a", RawFile(gray, format)), 1, decoded)) << decoded.error;
    ASSERT_EQ(decoded.image.size(), gray.size());
    for (int c = 0; c < 3; ++c) {
      EXPECT_NEAR(decoded.image.at<Rgba16>(30, 40)[c], BaseCurveTable()[128 * 257], 500) << c;
    }
  }
}

TEST_F(RawDecoder, ChannelsAreRedGreenBlue) {
  const cv::Mat orange(60, 80, CV_8UC3, cv::Scalar(200, 120, 60));
  DecodedImage decoded;
  ASSERT_TRUE(DecodeRaw(Write("a.dng", RawFile(orange, RawFormat::kDng)), 1, decoded));
  const auto& pixel = decoded.image.at<Rgba16>(30, 40);
  EXPECT_NEAR(pixel[0], BaseCurveTable()[200 * 257], 800);
  EXPECT_NEAR(pixel[1], BaseCurveTable()[120 * 257], 800);
  EXPECT_NEAR(pixel[2], BaseCurveTable()[60 * 257], 800);
}

TEST_F(RawDecoder, ReportsShootingData) {
  RawOptions options;
  options.format = RawFormat::kDng;
  options.make = "Testmaker";
  options.model = "Model 7";
  options.iso = 800;
  options.exposure_time = {1, 50};
  options.f_number = {56, 10};
  options.focal_length = {105, 2};
  options.multipliers = {2.0F, 1.0F, 1.5F};
  const std::string path = Write("a.dng", MakeRawFile(ColorRamps(40, 60), options));
  DecodedImage decoded;
  ASSERT_TRUE(DecodeRaw(path, 1, decoded));
  EXPECT_STREQ(decoded.make, "Testmaker");
  EXPECT_STREQ(decoded.model, "Model 7");
  EXPECT_EQ(decoded.iso_speed, 800.0F);
  EXPECT_FLOAT_EQ(decoded.shutter, 0.02F);
  EXPECT_FLOAT_EQ(decoded.aperture, 5.6F);
  EXPECT_FLOAT_EQ(decoded.focal_len, 52.5F);
  EXPECT_NEAR(decoded.cam_mul[0], 2.0F, 1e-5);
  EXPECT_NEAR(decoded.cam_mul[1], 1.0F, 1e-5);
  EXPECT_NEAR(decoded.cam_mul[2], 1.5F, 1e-5);
  EXPECT_EQ(decoded.cam_mul[3], 0.0F);
  EXPECT_EQ(decoded.orientation, 0);
}

TEST(DecodeRaw, ReportsShootingDataOfASample) {
  DecodedImage decoded;
  ASSERT_TRUE(DecodeRaw(kSample, 2, decoded));
  EXPECT_STREQ(decoded.make, "Sony");
  EXPECT_STREQ(decoded.model, "ILCE-7M3");
  EXPECT_EQ(decoded.iso_speed, 100.0F);
  EXPECT_FLOAT_EQ(decoded.shutter, 1.0F / 250.0F);
  EXPECT_EQ(decoded.aperture, 8.0F);
  EXPECT_EQ(decoded.focal_len, 35.0F);
  EXPECT_EQ(decoded.cam_mul, (std::array<float, 4>{2253, 1024, 1638, 1024}));
  const PlainDecode plain(kSample, 2);
  for (size_t row = 0; row < 3; ++row) {
    for (size_t column = 0; column < 4; ++column) {
      EXPECT_EQ(decoded.rgb_cam[row][column], plain.Data().color.rgb_cam[row][column]);
    }
  }
}

TEST(DecodedImageRecord, IsEmptyAtFirst) {
  const DecodedImage decoded;
  EXPECT_TRUE(decoded.image.empty());
  EXPECT_EQ(decoded.width, 0);
  EXPECT_EQ(decoded.height, 0);
  EXPECT_EQ(decoded.iso_speed, 0.0F);
  EXPECT_EQ(decoded.shutter, 0.0F);
  EXPECT_EQ(decoded.aperture, 0.0F);
  EXPECT_EQ(decoded.focal_len, 0.0F);
  EXPECT_EQ(std::string(decoded.make, sizeof(decoded.make)), std::string(64, '\0'));
  EXPECT_EQ(std::string(decoded.model, sizeof(decoded.model)), std::string(64, '\0'));
  EXPECT_EQ(decoded.cam_mul, (std::array<float, 4>{1, 1, 1, 1}));
  EXPECT_EQ(decoded.orientation, 0);
  EXPECT_EQ(decoded.path, "");
  EXPECT_EQ(decoded.error, "");
}

// The stored image is brightest at its top left.
TEST_F(RawDecoder, ImagesAreTurnedUpright) {
  cv::Mat rgb(40, 64, CV_8UC3, cv::Scalar::all(60));
  rgb(cv::Rect(0, 0, 16, 12)).setTo(cv::Scalar::all(180));
  const struct {
    int exif, flip;
    cv::Size size;
    cv::Point bright;
  } cases[] = {{1, 0, {64, 40}, {6, 5}},
               {3, 3, {64, 40}, {57, 34}},
               {6, 6, {40, 64}, {34, 6}},
               {8, 5, {40, 64}, {5, 57}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.exif);
    RawOptions options;
    options.format = RawFormat::kDng;
    options.preview = RawPreview::kNone;
    options.orientation = c.exif;
    DecodedImage decoded;
    ASSERT_TRUE(DecodeRaw(Write("a.dng", MakeRawFile(rgb, options)), 1, decoded));
    EXPECT_EQ(decoded.orientation, c.flip);
    EXPECT_EQ(decoded.width, c.size.width);
    EXPECT_EQ(decoded.height, c.size.height);
    cv::Point brightest;
    cv::Mat green, smooth;
    cv::extractChannel(decoded.image, green, 1);
    cv::blur(green, smooth, cv::Size(11, 9));
    cv::minMaxLoc(smooth, nullptr, nullptr, nullptr, &brightest);
    EXPECT_LE(std::abs(brightest.x - c.bright.x), 6);
    EXPECT_LE(std::abs(brightest.y - c.bright.y), 6);
  }
}

TEST_F(RawDecoder, NamesMayHoldSpacesAndAnyLetters) {
  DecodedImage decoded;
  EXPECT_TRUE(DecodeRaw(
      Write("\xC3\xA9t\xC3\xA9 \xE5\x86\x99\xE7\x9C\x9F", RawFile(ColorRamps(40, 60), RawFormat::kDng)), 1,
      decoded));
}

TEST(DecodeRaw, ThreadsMayDecodeAtOnce) {
  DecodedImage decoded[4];
  std::vector<std::thread> threads;
  for (DecodedImage& one : decoded) {
    threads.emplace_back([&one] { EXPECT_TRUE(DecodeRaw(kTestData + "no_thumb.dng", 1, one)); });
  }
  for (std::thread& thread : threads) thread.join();
  const cv::Mat expected = PlainDecode(kTestData + "no_thumb.dng", 1).Image();
  for (const DecodedImage& one : decoded) ExpectImage(one, expected);
}

TEST_F(RawDecoder, ThePathMayBeTheRecordsOwn) {
  DecodedImage decoded;
  decoded.path = kTestData + "no_thumb.dng";
  decoded.error = "earlier";
  ASSERT_TRUE(DecodeRaw(decoded.path, 1, decoded));
  EXPECT_EQ(decoded.path, kTestData + "no_thumb.dng");
  EXPECT_EQ(decoded.error, "");
  decoded.path = dir_.File("missing");
  ASSERT_FALSE(DecodeRaw(decoded.path, 1, decoded));
  EXPECT_EQ(decoded.path, dir_.File("missing"));
}

TEST_F(RawDecoder, ASuccessReplacesEverything) {
  DecodedImage decoded;
  ASSERT_TRUE(DecodeRaw(kTestData + "uncompressed.ARW", 1, decoded));
  ASSERT_TRUE(DecodeRaw(kTestData + "no_thumb.dng", 1, decoded));
  EXPECT_EQ(decoded.image.size(), cv::Size(480, 320));
  EXPECT_STREQ(decoded.make, "Photobench");
  EXPECT_STREQ(decoded.model, "Bayer 14");
  EXPECT_EQ(decoded.iso_speed, 200.0F);
}

}  // namespace
}  // namespace lumvik::test
