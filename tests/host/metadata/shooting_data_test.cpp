// The shooting data of photographs, from every source.
#include "metadata/shooting_data.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "lumvik.h"
#include "metadata/metadata_fixture.h"
#include "metadata/raw_facts.h"
#include "photo/test_photos.h"
#include "support/file_bytes.h"
#include "support/raw_writer.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::MakeRawFile;
using lumvik::test::RawFormat;
using lumvik::test::RawOptions;
using lumvik::test::ReadBytes;
using lumvik::test::WriteBytes;

const std::string kSample = LUMVIK_SAMPLES "/sample_small.ARW";
constexpr int kRawWidth = 64;
constexpr int kRawHeight = 48;

class ShootingDataTest : public MetadataFixture {
 protected:
  std::string RawFile(const RawOptions& options) const {
    const cv::Mat gray(kRawHeight, kRawWidth, CV_8UC3, cv::Scalar::all(128));
    return WriteBytes(Path("in.raw"), MakeRawFile(gray, options));
  }

  static lumvik_host_exif ShootingData(const std::string& path, int quality, bool is_raw) {
    const std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)> context(lumvik_create_context(),
                                                                                    lumvik_destroy_context);
    EXPECT_EQ(lumvik_load_arw(context.get(), path.c_str(), quality), 0);
    ExifInfo reported{};
    EXPECT_EQ(lumvik_get_exif(context.get(), &reported), 0);
    return CompleteShootingData(reported, path, is_raw);
  }
};

TEST_F(ShootingDataTest, ARawFileHasAllOfIt) {
  const lumvik_host_exif exif = ShootingData(kSample, 4, true);
  EXPECT_EQ(exif.struct_size, sizeof(exif));
  EXPECT_STREQ(exif.make, "Sony");
  EXPECT_STREQ(exif.model, "ILCE-7M3");
  EXPECT_STREQ(exif.lens, "FE 24-105mm F4 G OSS");
  EXPECT_STREQ(exif.datetime, "2021:06:15 10:20:30");
  EXPECT_EQ(exif.orientation, 1);
  EXPECT_EQ(exif.width, 1600);
  EXPECT_EQ(exif.height, 1066);
  EXPECT_GT(exif.iso, 0);
  EXPECT_GT(exif.focal_length, 0);
  EXPECT_GT(exif.f_number, 0);
  EXPECT_GT(exif.exposure_time, 0);
  EXPECT_NEAR(exif.gps_latitude, -(33 + 51 / 60.0 + 24.48 / 3600), 1e-6);
  EXPECT_NEAR(exif.gps_longitude, -151.2, 0.01);
  // The chromaticity 0.3530, 0.3562: 4732 kelvin by McCamy's formula, 0.00066 below the locus by Krystek's.
  EXPECT_NEAR(exif.as_shot_temperature, 4732, 15);
  EXPECT_NEAR(exif.as_shot_tint, -2, 0.3);
}

TEST_F(ShootingDataTest, AnOrdinaryImageHasThatOfItsExif) {
  const std::string path = LUMVIK_TEST_DATA "/tower_orientation8.jpg";
  const lumvik_host_exif exif = ShootingData(path, 1, false);
  const auto image = OpenedByExiv2(path);
  EXPECT_EQ(exif.make, ExifValue(*image, "Exif.Image.Make"));
  EXPECT_EQ(exif.datetime, ExifValue(*image, "Exif.Photo.DateTimeOriginal"));
  EXPECT_EQ(exif.orientation, 8);
  EXPECT_EQ(std::to_string(exif.width), ExifValue(*image, "Exif.Photo.PixelXDimension"));
  EXPECT_EQ(std::to_string(exif.height), ExifValue(*image, "Exif.Photo.PixelYDimension"));
  EXPECT_TRUE(std::isnan(exif.gps_latitude));
}

TEST_F(ShootingDataTest, WithoutExifItIsUnknown) {
  const lumvik_host_exif exif = ShootingData(PlainImage("in.png"), 1, false);
  EXPECT_STREQ(exif.make, "");
  EXPECT_STREQ(exif.lens, "");
  EXPECT_STREQ(exif.datetime, "");
  EXPECT_EQ(exif.iso, 0);
  EXPECT_EQ(exif.width, 0);
  EXPECT_EQ(exif.orientation, 1);
  EXPECT_TRUE(std::isnan(exif.gps_latitude));
  EXPECT_TRUE(std::isnan(exif.gps_longitude));
  EXPECT_TRUE(std::isnan(exif.as_shot_temperature));
  EXPECT_TRUE(std::isnan(exif.as_shot_tint));
}

TEST_F(ShootingDataTest, WithoutAColorMatrixTheWhiteBalanceIsUnknown) {
  const lumvik_host_exif exif = ShootingData(LUMVIK_TEST_DATA "/jpeg_thumb.dng", 4, true);
  EXPECT_TRUE(std::isnan(exif.as_shot_temperature));
  EXPECT_TRUE(std::isnan(exif.as_shot_tint));
}

TEST_F(ShootingDataTest, SizeAndOrientationOfARawFileAreThoseOfTheFile) {
  for (int orientation = 1; orientation <= 8; ++orientation) {
    for (const int quality : {1, 4}) {
      RawOptions options;
      options.format = RawFormat::kDng;
      options.orientation = orientation;
      const lumvik_host_exif exif = ShootingData(RawFile(options), quality, true);
      EXPECT_EQ(exif.orientation, orientation);
      EXPECT_EQ(exif.width, kRawWidth) << orientation;
      EXPECT_EQ(exif.height, kRawHeight) << orientation;
    }
  }
}

TEST_F(ShootingDataTest, AnOrientationThatDoesNotExistIsUpright) {
  ExifInfo reported{};
  for (const int orientation : {-1, 0, 9, 65535}) {
    reported.orientation = orientation;
    EXPECT_EQ(CompleteShootingData(reported, Path("none.jpg"), false).orientation, 1);
  }
}

#if !defined(_WIN32)

// In Berlin the hour from 2 to 3 did not exist on that day.
TEST_F(ShootingDataTest, TheTimeIsAsStoredInEveryTimeZone) {
  RawOptions options;
  for (const char* zone : {"UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "XXX11"}) {
    setenv("TZ", zone, 1);
    tzset();
    for (const char* time : {"2021:03:28 02:30:00", "2021:10:31 02:30:00", "2021:06:15 23:59:59"}) {
      options.datetime = time;
      const std::optional<RawFacts> facts = ReadRawFacts(RawFile(options));
      ASSERT_TRUE(facts);
      EXPECT_EQ(facts->datetime, time) << zone;
    }
  }
  unsetenv("TZ");
  tzset();
}

#endif

TEST_F(ShootingDataTest, AnUnknownTimeOrLensIsEmpty) {
  RawOptions options;
  options.datetime = std::string(19, ' ');
  const std::optional<RawFacts> facts = ReadRawFacts(RawFile(options));
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->datetime, "");
  EXPECT_EQ(facts->lens, "");
  EXPECT_TRUE(std::isnan(facts->latitude));
  EXPECT_TRUE(std::isnan(facts->longitude));
}

TEST_F(ShootingDataTest, WhatIsNoRawFileHasNoFacts) {
  EXPECT_FALSE(ReadRawFacts(PlainImage("in.jpg")));
  EXPECT_FALSE(ReadRawFacts(Path("none.raw")));
}

// LibRaw rejects a JPEG, so only the module can know its lens.
TEST_F(ShootingDataTest, TheModuleKnowsWhatOthersDoNot) {
  const std::string path = PlainImage("in.jpg");
  const auto image = OpenedByExiv2(path);
  image->exifData()["Exif.Image.Make"] = "Canon";
  image->exifData()["Exif.Photo.DateTimeOriginal"] = "2013:05:31 18:20:00";
  image->exifData()["Exif.CanonCs.LensType"] = std::uint16_t{198};
  image->exifData()["Exif.CanonCs.Lens"] = "50 50 1";
  image->writeMetadata();
  ExifInfo reported{};
  lumvik_host_exif exif = CompleteShootingData(reported, path, true);
  EXPECT_STREQ(exif.lens, "Canon EF 50mm f/1.4 USM");
  EXPECT_STREQ(exif.datetime, "2013:05:31 18:20:00");
  std::snprintf(reported.lens, sizeof(reported.lens), "A lens");
  exif = CompleteShootingData(reported, path, true);
  EXPECT_STREQ(exif.lens, "A lens");
  EXPECT_STREQ(exif.datetime, "2013:05:31 18:20:00");
}

// The same data for the file, the file under another name, and its bytes.
TEST_F(ShootingDataTest, APhotoReportsIt) {
  const std::vector<std::uint8_t> bytes = ReadBytes(kSample);
  const std::string misnamed = WriteBytes(Path("in.jpg"), bytes);
  const lumvik_host_exif expected = ShootingData(kSample, 4, true);
  const PhotoHandle photos[] = {OpenForTest(kSample), OpenForTest(misnamed), OpenBytesForTest(bytes)};
  for (const PhotoHandle& photo : photos) {
    lumvik_host_exif exif{};
    exif.struct_size = sizeof(exif);
    ASSERT_EQ(lumvik_host_get_exif(photo.get(), &exif), LUMVIK_HOST_OK) << lumvik_host_last_error();
    EXPECT_EQ(std::memcmp(&exif, &expected, sizeof(exif)), 0);
  }
}

TEST_F(ShootingDataTest, MisuseIsRefused) {
  const PhotoHandle photo = OpenForTest(PlainImage("in.jpg"));
  lumvik_host_exif exif{};
  EXPECT_EQ(lumvik_host_get_exif(photo.get(), &exif), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_get_exif(photo.get(), nullptr), LUMVIK_HOST_INVALID_ARGUMENT);
  exif.struct_size = sizeof(exif);
  EXPECT_EQ(lumvik_host_get_exif(nullptr, &exif), LUMVIK_HOST_INVALID_HANDLE);
  EXPECT_EQ(exif.orientation, 0);
}

}  // namespace
}  // namespace lumvik::host::test
