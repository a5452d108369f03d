// EXIF data of the loaded photograph.
#include <cstring>
#include <limits>

#include "api_test.h"
#include "support/exif_jpeg.h"
#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

constexpr uint16_t kApertureTag = 0x9202;
constexpr uint16_t kShutterSpeedTag = 0x9201;
constexpr uint16_t kPixelXTag = 0xa002;
constexpr uint16_t kPixelYTag = 0xa003;
constexpr uint16_t kLensModelTag = 0xa434;
constexpr uint16_t kLatitudeRefTag = 1;
constexpr uint16_t kLatitudeTag = 2;
constexpr uint16_t kLongitudeRefTag = 3;
constexpr uint16_t kLongitudeTag = 4;

ExifInfo Empty() {
  ExifInfo info{};
  info.gps_latitude = std::numeric_limits<double>::quiet_NaN();
  info.gps_longitude = std::numeric_limits<double>::quiet_NaN();
  return info;
}

class ExifTest : public ApiTest {
 protected:
  void Load(const std::string& path) const {
    ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), LUMVIK_OK) << LastError();
  }

  // EXIF data of the loaded photograph, read into a record filled with garbage.
  ExifInfo Info() const {
    ExifInfo info;
    std::memset(&info, 0x5a, sizeof(info));
    EXPECT_EQ(lumvik_get_exif(ctx(), &info), LUMVIK_OK) << LastError();
    return info;
  }

  ExifInfo InfoOf(const std::string& path) const {
    Load(path);
    return Info();
  }

  // A 64x48 JPEG with this EXIF block.
  std::string WriteExif(const std::string& name, const ExifBlock& block) const {
    return WriteBytes(Path(name), JpegWithExif(block.Serialize()));
  }

  ExifInfo InfoOf(const ExifBlock& block) const { return InfoOf(WriteExif("a.jpg", block)); }

  const ExifBlock a_block_ = ExifBlock().Ascii(Ifd::kZero, tag::kMake, "Maker");
};

TEST_F(ExifTest, FailsWithoutAFileAndLeavesTheRecordUntouched) {
  ExifInfo untouched;
  std::memset(&untouched, 0x5a, sizeof(untouched));
  ExifInfo info = untouched;
  const auto expect_failure = [&] {
    ctx()->last_error = "another";
    EXPECT_EQ(lumvik_get_exif(ctx(), &info), kFailed);
    EXPECT_EQ(LastError(), "no file loaded");
    EXPECT_EQ(std::memcmp(&info, &untouched, sizeof(info)), 0);
  };
  expect_failure();
  EXPECT_EQ(lumvik_load_arw(ctx(), Path("missing.png").c_str(), 1), kFailed);
  expect_failure();
  EXPECT_EQ(lumvik_load_arw(ctx(), Path("missing.arw").c_str(), 1), kFailed);
  expect_failure();
  Load(WriteRaw("a.arw"));
  lumvik_unload(ctx());
  expect_failure();
}

TEST_F(ExifTest, OrdinaryImagesWithoutExifGiveAnEmptyRecord) {
  for (const char* name : {"a.jpg", "a.png", "a.tif", "a.bmp", "a.webp"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(Describe(InfoOf(WritePicture(name))), Describe(Empty()));
  }
  EXPECT_EQ(LastError(), "");
}

TEST_F(ExifTest, CameraJpegsGiveTheirExif) {
  ExifInfo expected = Empty();
  std::strcpy(expected.make, "Canon");
  std::strcpy(expected.model, "Canon PowerShot A85");
  expected.focal_length = 173.0F / 32.0F;
  expected.f_number = 6.3F;
  expected.exposure_time = 1.0F / 160.0F;
  std::strcpy(expected.datetime, "2005:01:31 05:51:17");
  expected.width = 1704;
  expected.height = 2272;
  expected.orientation = 8;
  EXPECT_EQ(Describe(InfoOf(LUMVIK_TEST_DATA "/tower_orientation8.jpg")), Describe(expected));
}

TEST_F(ExifTest, RawFilesFallBackToTheDecodersMetadata) {
  RawOptions options;
  options.make = "SONY";
  options.model = "ILCE-7M3";
  options.iso = 400;
  options.exposure_time = {1, 125};
  options.f_number = {28, 10};
  options.focal_length = {55, 1};
  options.orientation = 6;
  ExifInfo expected = Empty();
  std::strcpy(expected.make, "Sony");
  std::strcpy(expected.model, "ILCE-7M3");
  expected.focal_length = 55;
  expected.f_number = 2.8F;
  expected.exposure_time = 1.0F / 125.0F;
  expected.iso = 400;
  expected.width = 32;
  expected.height = 48;
  expected.orientation = 6;
  EXPECT_EQ(Describe(InfoOf(WriteRaw("a.arw", options))), Describe(expected));
}

TEST_F(ExifTest, TheFallbackReportsTheDecodedSize) {
  const std::string path = WriteRaw("a.arw");
  ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 4), LUMVIK_OK);
  EXPECT_EQ(Info().width, 12);
  EXPECT_EQ(Info().height, 8);
}

TEST_F(ExifTest, TheFallbackTruncatesTheIso) {
  Load(WriteRaw("a.arw"));
  ctx()->decoded.iso_speed = 124.9F;
  EXPECT_EQ(Info().iso, 124);
}

TEST_F(ExifTest, TheFileIsReadAgainOnEveryCall) {
  Load(LUMVIK_TEST_DATA "/tower_orientation8.jpg");
  const ExifInfo of_tower = Info();
  std::filesystem::copy(LUMVIK_TEST_DATA "/tower_orientation8.jpg", Path("a.jpg"));
  EXPECT_EQ(Describe(InfoOf(Path("a.jpg"))), Describe(of_tower));
  std::filesystem::remove(Path("a.jpg"));
  EXPECT_EQ(Describe(Info()), Describe(Empty()));
}

TEST_F(ExifTest, AFailedLoadKeepsTheExifOfTheEarlierPhotograph) {
  const ExifInfo before = InfoOf(WriteRaw("a.arw"));
  EXPECT_EQ(lumvik_load_arw(ctx(), Path("missing.png").c_str(), 1), kFailed);
  EXPECT_EQ(lumvik_load_arw(ctx(), Path("missing.arw").c_str(), 1), kFailed);
  EXPECT_EQ(Describe(Info()), Describe(before));
}

TEST_F(ExifTest, EveryFieldIsReadFromItsTag) {
  ExifBlock block;
  block.Ascii(Ifd::kZero, tag::kMake, "Maker").Ascii(Ifd::kZero, tag::kModel, "Model");
  block.Shorts(Ifd::kZero, tag::kOrientation, {3}).Ascii(Ifd::kZero, tag::kDateTime, "2000:01:01 00:00:00");
  block.Rationals(Ifd::kExif, tag::kFocalLength, {{350, 10}})
      .Rationals(Ifd::kExif, tag::kFNumber, {{56, 10}});
  block.Rationals(Ifd::kExif, tag::kExposureTime, {{10, 2500}})
      .Shorts(Ifd::kExif, tag::kIsoSpeed, {800, 100});
  block.Ascii(Ifd::kExif, tag::kDateTimeOriginal, "2024:05:31 18:20:00");
  block.Ascii(Ifd::kExif, kLensModelTag, "FE 35mm F1.8");
  block.Shorts(Ifd::kExif, kPixelXTag, {6000}).Shorts(Ifd::kExif, kPixelYTag, {4000});
  block.Ascii(Ifd::kGps, kLatitudeRefTag, "S").Rationals(Ifd::kGps, kLatitudeTag, {{52, 1}, {30, 1}, {0, 1}});
  block.Ascii(Ifd::kGps, kLongitudeRefTag, "E")
      .Rationals(Ifd::kGps, kLongitudeTag, {{13, 1}, {24, 1}, {36, 1}});

  ExifInfo expected{};
  std::strcpy(expected.make, "Maker");
  std::strcpy(expected.model, "Model");
  std::strcpy(expected.lens, "FE 35mm F1.8");
  expected.focal_length = 35;
  expected.f_number = 5.6F;
  expected.exposure_time = 0.004F;
  expected.iso = 800;
  std::strcpy(expected.datetime, "2024:05:31 18:20:00");
  expected.width = 6000;
  expected.height = 4000;
  expected.orientation = 3;
  expected.gps_latitude = -52.5;
  expected.gps_longitude = 13.0 + 24.0 / 60.0 + 36.0 / 3600.0;
  EXPECT_EQ(Describe(InfoOf(block)), Describe(expected));
}

TEST_F(ExifTest, ApexValuesAreTheFallback) {
  ExifBlock block;
  block.Rationals(Ifd::kExif, kApertureTag, {{4, 1}}).Rationals(Ifd::kExif, kShutterSpeedTag, {{7, 1}});
  const ExifInfo info = InfoOf(block);
  EXPECT_EQ(info.f_number, 4.0F);
  EXPECT_EQ(info.exposure_time, 0.0078125F);
}

TEST_F(ExifTest, MissingNumbersAreZeroAndMissingCoordinatesAreNan) {
  ExifInfo expected = Empty();
  std::strcpy(expected.make, "Maker");
  EXPECT_EQ(Describe(InfoOf(a_block_)), Describe(expected));
}

TEST_F(ExifTest, LongTextsAreTruncated) {
  const std::string digits = "0123456789012345678901234567890123456789012345678901234567890123456789";
  ExifBlock block;
  block.Ascii(Ifd::kZero, tag::kMake, digits + "!").Ascii(Ifd::kZero, tag::kModel, digits);
  block.Ascii(Ifd::kExif, tag::kDateTimeOriginal, digits).Ascii(Ifd::kExif, kLensModelTag, digits + digits);
  const ExifInfo info = InfoOf(block);
  EXPECT_EQ(info.make, digits.substr(0, 63));
  EXPECT_EQ(info.model, digits.substr(0, 63));
  EXPECT_EQ(info.lens, (digits + digits).substr(0, 127));
  EXPECT_EQ(info.datetime, digits.substr(0, 31));
}

TEST_F(ExifTest, DateTimeIsTheFallbackOfDateTimeOriginal) {
  EXPECT_STREQ(InfoOf(ExifBlock().Ascii(Ifd::kZero, tag::kDateTime, "2000:01:01 00:00:00")).datetime,
               "2000:01:01 00:00:00");
}

TEST_F(ExifTest, ImagesAreRotatedByTheirOrientation) {
  EXPECT_EQ(InfoOf(ExifBlock().Shorts(Ifd::kZero, tag::kOrientation, {6})).orientation, 6);
  EXPECT_EQ(lumvik_get_width(ctx()), 48);
  EXPECT_EQ(lumvik_get_height(ctx()), 64);
}

}  // namespace
}  // namespace lumvik::test
