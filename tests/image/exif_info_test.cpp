#include "image/exif_info.h"

#include <cmath>
#include <cstring>
#include <limits>

#include "support/exif_record.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

// Each test in both byte orders.
class ExifFields : public ::testing::TestWithParam<ByteOrder> {
 protected:
  ExifBlock exif_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(ExifInfo, ExifFields, ::testing::Values(ByteOrder::kLittle, ByteOrder::kBig),
                         ByteOrderName);

TEST_P(ExifFields, AreReadFromTheirTags) {
  exif_.Ascii(Ifd::kZero, EXIF_TAG_MAKE, "Maker & Sons")
      .Ascii(Ifd::kZero, EXIF_TAG_MODEL, "Model 7")
      .Shorts(Ifd::kZero, EXIF_TAG_ORIENTATION, {6})
      .Ascii(Ifd::kZero, EXIF_TAG_DATE_TIME, "2020:01:02 03:04:05")
      .Ascii(Ifd::kExif, EXIF_TAG_LENS_MODEL, "FE 24-105mm F4 G OSS")
      .Rationals(Ifd::kExif, EXIF_TAG_FOCAL_LENGTH, {{105, 2}})
      .Rationals(Ifd::kExif, EXIF_TAG_FNUMBER, {{28, 10}})
      .Rationals(Ifd::kExif, EXIF_TAG_EXPOSURE_TIME, {{1, 250}})
      .Shorts(Ifd::kExif, EXIF_TAG_ISO_SPEED_RATINGS, {400})
      .Ascii(Ifd::kExif, EXIF_TAG_DATE_TIME_ORIGINAL, "2019:12:31 23:59:58")
      .Shorts(Ifd::kExif, EXIF_TAG_PIXEL_X_DIMENSION, {6000})
      .Shorts(Ifd::kExif, EXIF_TAG_PIXEL_Y_DIMENSION, {4000})
      .Ascii(Ifd::kGps, EXIF_TAG_GPS_LATITUDE_REF, "N")
      .Rationals(Ifd::kGps, EXIF_TAG_GPS_LATITUDE, {{48, 1}, {30, 1}, {36, 1}})
      .Ascii(Ifd::kGps, EXIF_TAG_GPS_LONGITUDE_REF, "W")
      .Rationals(Ifd::kGps, EXIF_TAG_GPS_LONGITUDE, {{2, 1}, {15, 1}, {0, 1}});
  const ExifInfo info = ReadRecord(exif_);
  EXPECT_STREQ(info.make, "Maker & Sons");
  EXPECT_STREQ(info.model, "Model 7");
  EXPECT_STREQ(info.lens, "FE 24-105mm F4 G OSS");
  EXPECT_EQ(info.focal_length, 52.5F);
  EXPECT_EQ(info.f_number, 2.8F);
  EXPECT_EQ(info.exposure_time, 0.004F);
  EXPECT_EQ(info.iso, 400);
  EXPECT_STREQ(info.datetime, "2019:12:31 23:59:58");
  EXPECT_EQ(info.width, 6000);
  EXPECT_EQ(info.height, 4000);
  EXPECT_EQ(info.orientation, 6);
  EXPECT_EQ(info.reserved, 0);
  EXPECT_DOUBLE_EQ(info.gps_latitude, 48.51);
  EXPECT_DOUBLE_EQ(info.gps_longitude, -2.25);
}

TEST_P(ExifFields, AreZeroEmptyOrNaNWithoutTheirTags) {
  exif_.Ascii(Ifd::kZero, EXIF_TAG_ARTIST, "somebody");
  ExpectEmpty(ReadRecord(exif_));
}

// The thumbnail's directory uses the same tag numbers.
TEST_P(ExifFields, AreNotReadFromAnotherDirectory) {
  exif_.Ascii(Ifd::kZero, EXIF_TAG_ARTIST, "somebody")
      .Ascii(Ifd::kOne, EXIF_TAG_MAKE, "thumbnail maker")
      .Ascii(Ifd::kOne, EXIF_TAG_MODEL, "thumbnail model")
      .Ascii(Ifd::kOne, EXIF_TAG_DATE_TIME, "2001:01:01 01:01:01")
      .Shorts(Ifd::kOne, EXIF_TAG_ORIENTATION, {6});
  ExpectEmpty(ReadRecord(exif_));
}

TEST_P(ExifFields, FNumberFallsBackToTheApexAperture) {
  exif_.Rationals(Ifd::kExif, EXIF_TAG_APERTURE_VALUE, {{4, 1}});
  EXPECT_FLOAT_EQ(ReadRecord(exif_).f_number, 4.0F);
  ExifBlock fraction(GetParam());
  fraction.Rationals(Ifd::kExif, EXIF_TAG_APERTURE_VALUE, {{3, 1}});
  EXPECT_FLOAT_EQ(ReadRecord(fraction).f_number, std::sqrt(8.0F));
}

TEST_P(ExifFields, FNumberOutranksTheApexAperture) {
  exif_.Rationals(Ifd::kExif, EXIF_TAG_APERTURE_VALUE, {{4, 1}})
      .Rationals(Ifd::kExif, EXIF_TAG_FNUMBER, {{9, 1}});
  EXPECT_EQ(ReadRecord(exif_).f_number, 9.0F);
}

TEST_P(ExifFields, ExposureTimeFallsBackToTheApexShutterSpeed) {
  exif_.SignedRationals(Ifd::kExif, EXIF_TAG_SHUTTER_SPEED_VALUE, {{7, 1}});
  EXPECT_FLOAT_EQ(ReadRecord(exif_).exposure_time, 0.0078125F);
  ExifBlock unsigned_format(GetParam());
  unsigned_format.Rationals(Ifd::kExif, EXIF_TAG_SHUTTER_SPEED_VALUE, {{15, 2}});
  EXPECT_FLOAT_EQ(ReadRecord(unsigned_format).exposure_time, 1.0F / std::exp2(7.5F));
}

TEST_P(ExifFields, ExposureTimeOutranksTheApexShutterSpeed) {
  exif_.SignedRationals(Ifd::kExif, EXIF_TAG_SHUTTER_SPEED_VALUE, {{7, 1}})
      .Rationals(Ifd::kExif, EXIF_TAG_EXPOSURE_TIME, {{30, 1}});
  EXPECT_EQ(ReadRecord(exif_).exposure_time, 30.0F);
}

// Read as unsigned, -1 is an enormous shutter speed.
TEST_P(ExifFields, ANegativeShutterSpeedGivesNoTime) {
  exif_.SignedRationals(Ifd::kExif, EXIF_TAG_SHUTTER_SPEED_VALUE, {{0xFFFFFFFF, 1}});
  EXPECT_EQ(ReadRecord(exif_).exposure_time, 0.0F);
}

TEST_P(ExifFields, AZeroDenominatorGivesZero) {
  exif_.Rationals(Ifd::kExif, EXIF_TAG_FOCAL_LENGTH, {{50, 0}})
      .Rationals(Ifd::kExif, EXIF_TAG_FNUMBER, {{8, 0}})
      .Rationals(Ifd::kExif, EXIF_TAG_APERTURE_VALUE, {{4, 1}})
      .Rationals(Ifd::kExif, EXIF_TAG_EXPOSURE_TIME, {{0, 0}})
      .SignedRationals(Ifd::kExif, EXIF_TAG_SHUTTER_SPEED_VALUE, {{7, 1}});
  const ExifInfo info = ReadRecord(exif_);
  EXPECT_EQ(info.focal_length, 0.0F);
  EXPECT_EQ(info.f_number, 0.0F);
  EXPECT_EQ(info.exposure_time, 0.0F);
}

TEST_P(ExifFields, AZeroDenominatorInApexUnitsGivesTwoToThePowerOfZero) {
  exif_.Rationals(Ifd::kExif, EXIF_TAG_APERTURE_VALUE, {{4, 0}})
      .SignedRationals(Ifd::kExif, EXIF_TAG_SHUTTER_SPEED_VALUE, {{7, 0}});
  EXPECT_EQ(ReadRecord(exif_).f_number, 1.0F);
  EXPECT_EQ(ReadRecord(exif_).exposure_time, 1.0F);
}

TEST_P(ExifFields, LargeFractionsKeepTheirValue) {
  exif_.Rationals(Ifd::kExif, EXIF_TAG_FOCAL_LENGTH, {{4000000000U, 80000000U}})
      .Rationals(Ifd::kExif, EXIF_TAG_EXPOSURE_TIME, {{1, 4000000000U}});
  EXPECT_EQ(ReadRecord(exif_).focal_length, 50.0F);
  EXPECT_FLOAT_EQ(ReadRecord(exif_).exposure_time, 2.5e-10F);
}

TEST_P(ExifFields, IsoIsTheFirstOfSeveralAndUnsigned) {
  exif_.Shorts(Ifd::kExif, EXIF_TAG_ISO_SPEED_RATINGS, {51200, 100, 200});
  EXPECT_EQ(ReadRecord(exif_).iso, 51200);
  ExifBlock two(GetParam());
  two.Shorts(Ifd::kExif, EXIF_TAG_ISO_SPEED_RATINGS, {64, 100});
  EXPECT_EQ(ReadRecord(two).iso, 64);
}

TEST_P(ExifFields, DimensionsMayBeShortOrLong) {
  exif_.Shorts(Ifd::kExif, EXIF_TAG_PIXEL_X_DIMENSION, {65535})
      .Longs(Ifd::kExif, EXIF_TAG_PIXEL_Y_DIMENSION, {4000});
  EXPECT_EQ(ReadRecord(exif_).width, 65535);
  EXPECT_EQ(ReadRecord(exif_).height, 4000);
  ExifBlock large(GetParam());
  large.Longs(Ifd::kExif, EXIF_TAG_PIXEL_X_DIMENSION, {70000})
      .Shorts(Ifd::kExif, EXIF_TAG_PIXEL_Y_DIMENSION, {1});
  EXPECT_EQ(ReadRecord(large).width, 70000);
  EXPECT_EQ(ReadRecord(large).height, 1);
}

TEST_P(ExifFields, TheDateFallsBackToTheFilesDate) {
  exif_.Ascii(Ifd::kZero, EXIF_TAG_DATE_TIME, "2020:01:02 03:04:05");
  EXPECT_STREQ(ReadRecord(exif_).datetime, "2020:01:02 03:04:05");
}

TEST_P(ExifFields, LongTextsAreCutToTheirFields) {
  const auto text = [](char first, size_t size) {
    std::string long_text(size, '.');
    for (size_t i = 0; i < size; ++i) long_text[i] = static_cast<char>(first + static_cast<char>(i % 20));
    return long_text;
  };
  exif_.Ascii(Ifd::kZero, EXIF_TAG_MAKE, text('a', 64))
      .Ascii(Ifd::kZero, EXIF_TAG_MODEL, text('b', 300))
      .Ascii(Ifd::kExif, EXIF_TAG_LENS_MODEL, text('c', 1000))
      .Ascii(Ifd::kExif, EXIF_TAG_DATE_TIME_ORIGINAL, text('d', 40));
  const ExifInfo info = ReadRecord(exif_);
  EXPECT_EQ(std::string(info.make), text('a', 63));
  EXPECT_EQ(std::string(info.model), text('b', 63));
  EXPECT_EQ(std::string(info.lens), text('c', 127));
  EXPECT_EQ(std::string(info.datetime), text('d', 31));
  EXPECT_EQ(info.focal_length, 0.0F);
  EXPECT_EQ(info.width, 0);
}

TEST_P(ExifFields, TextsThatJustFitAreKept) {
  exif_.Ascii(Ifd::kZero, EXIF_TAG_MAKE, std::string(63, 'm'))
      .Ascii(Ifd::kExif, EXIF_TAG_LENS_MODEL, std::string(127, 'l'))
      .Ascii(Ifd::kExif, EXIF_TAG_DATE_TIME_ORIGINAL, std::string(31, 'd'));
  const ExifInfo info = ReadRecord(exif_);
  EXPECT_EQ(std::string(info.make), std::string(63, 'm'));
  EXPECT_EQ(std::string(info.lens), std::string(127, 'l'));
  EXPECT_EQ(std::string(info.datetime), std::string(31, 'd'));
}

TEST_P(ExifFields, ATextWithoutItsNulIsKept) {
  exif_.Entry(Ifd::kZero, EXIF_TAG_MAKE, TiffFormat::kAscii, 5, {'M', 'a', 'k', 'e', 'r'});
  EXPECT_STREQ(ReadRecord(exif_).make, "Maker");
}

TEST(ExifInfo, OfAFujifilmPhotograph) {
  ExifInfo info = UsedRecord();
  ASSERT_TRUE(ReadExifFile(kTestData + "eiffel_gps_north_east.jpg", info));
  EXPECT_STREQ(info.make, "FUJIFILM");
  EXPECT_STREQ(info.model, "FinePixS2Pro");
  EXPECT_STREQ(info.lens, "");
  EXPECT_EQ(info.focal_length, 2.400390625F);
  EXPECT_EQ(info.f_number, 0.2001953125F);
  EXPECT_FLOAT_EQ(info.exposure_time, 0.07348930673F);
  EXPECT_EQ(info.iso, 0);
  EXPECT_STREQ(info.datetime, "2002:08:24 13:59:08");
  EXPECT_EQ(info.width, 3600);
  EXPECT_EQ(info.height, 2400);
  EXPECT_EQ(info.orientation, 1);
  EXPECT_NEAR(info.gps_latitude, 48.8578333333333, 1e-10);
  EXPECT_NEAR(info.gps_longitude, 2.297, 1e-10);
}

// Big-endian, with an interoperability directory.
TEST(ExifInfo, OfAPentaxPhotograph) {
  ExifInfo info = UsedRecord();
  ASSERT_TRUE(ReadExifFile(kTestData + "cat.jpg", info));
  EXPECT_STREQ(info.make, "Asahi Optical Co.,Ltd");
  EXPECT_EQ(std::string(info.model).substr(0, 16), "PENTAX Optio 330");
  EXPECT_EQ(info.focal_length, 7.6F);
  EXPECT_EQ(info.f_number, 2.6F);
  EXPECT_EQ(info.exposure_time, 0.002F);
  EXPECT_EQ(info.iso, 0);
  EXPECT_STREQ(info.datetime, "2001:09:28 14:03:54");
  EXPECT_EQ(info.width, 2048);
  EXPECT_EQ(info.height, 1536);
  EXPECT_EQ(info.orientation, 1);
  EXPECT_TRUE(std::isnan(info.gps_latitude));
  EXPECT_TRUE(std::isnan(info.gps_longitude));
}

TEST(ExifInfo, OfAPhotographOnItsSide) {
  ExifInfo info = UsedRecord();
  ASSERT_TRUE(ReadExifFile(kTestData + "tower_orientation8.jpg", info));
  EXPECT_STREQ(info.make, "Canon");
  EXPECT_STREQ(info.model, "Canon PowerShot A85");
  EXPECT_EQ(info.focal_length, 5.40625F);
  EXPECT_EQ(info.f_number, 6.3F);
  EXPECT_EQ(info.exposure_time, 0.00625F);
  EXPECT_STREQ(info.datetime, "2005:01:31 05:51:17");
  EXPECT_EQ(info.width, 1704);
  EXPECT_EQ(info.height, 2272);
  EXPECT_EQ(info.orientation, 8);
}

TEST(ExifInfoFromDecoded, TakesWhatTheDecoderKnows) {
  DecodedImage decoded;
  decoded.width = 2000;
  decoded.height = 1333;
  decoded.iso_speed = 799.9F;
  decoded.shutter = 0.004F;
  decoded.aperture = 5.6F;
  decoded.focal_len = 52.5F;
  std::memset(decoded.make, 'm', sizeof(decoded.make) - 1);
  std::strcpy(decoded.model, "ILCE-7M3");
  decoded.orientation = 5;
  const ExifInfo info = ExifInfoFromDecoded(decoded);
  EXPECT_EQ(std::string(info.make), std::string(63, 'm'));
  EXPECT_STREQ(info.model, "ILCE-7M3");
  EXPECT_STREQ(info.lens, "");
  EXPECT_EQ(info.focal_length, 52.5F);
  EXPECT_EQ(info.f_number, 5.6F);
  EXPECT_EQ(info.exposure_time, 0.004F);
  EXPECT_EQ(info.iso, 799);
  EXPECT_STREQ(info.datetime, "");
  EXPECT_EQ(info.width, 2000);
  EXPECT_EQ(info.height, 1333);
  EXPECT_EQ(info.orientation, 5);
  EXPECT_EQ(info.reserved, 0);
  EXPECT_TRUE(std::isnan(info.gps_latitude));
  EXPECT_TRUE(std::isnan(info.gps_longitude));
}

TEST(ExifInfoFromDecoded, OfAnEmptyRecordIsEmpty) {
  ExpectEmpty(ExifInfoFromDecoded(DecodedImage()));
}

TEST(ExifInfoFromDecoded, AnIsoBeyondAllIntegersIsNone) {
  DecodedImage decoded;
  for (const float iso :
       {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN(), 3e9F}) {
    decoded.iso_speed = iso;
    EXPECT_EQ(ExifInfoFromDecoded(decoded).iso, 0) << iso;
  }
}

}  // namespace
}  // namespace lumvik::test
