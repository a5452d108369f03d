// The GPS coordinates of image/exif_info.h.
#include <cmath>

#include "image/exif_data.h"
#include "support/exif_record.h"

namespace lumvik::test {
namespace {

constexpr uint16_t kLatitudeRef = 1, kLatitude = 2, kLongitudeRef = 3, kLongitude = 4;

const std::vector<Rational> kHalfPast52 = {{52, 1}, {30, 1}, {0, 1}};

class ExifPosition : public ::testing::TestWithParam<ByteOrder> {
 protected:
  static double Latitude(const ExifBlock& exif) { return ReadRecord(exif).gps_latitude; }

  ExifBlock exif_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(ExifInfo, ExifPosition, ::testing::Values(ByteOrder::kLittle, ByteOrder::kBig),
                         ByteOrderName);

TEST_P(ExifPosition, SouthAndWestAreNegative) {
  const struct {
    const char *latitude_ref, *longitude_ref;
    double latitude, longitude;
  } cases[] = {{"N", "E", 52.5, 13.25},
               {"S", "W", -52.5, -13.25},
               {"S", "E", -52.5, 13.25},
               {"N", "W", 52.5, -13.25},
               {"South", "West", -52.5, -13.25}};
  for (const auto& c : cases) {
    ExifBlock exif(GetParam());
    exif.Ascii(Ifd::kGps, kLatitudeRef, c.latitude_ref)
        .Rationals(Ifd::kGps, kLatitude, kHalfPast52)
        .Ascii(Ifd::kGps, kLongitudeRef, c.longitude_ref)
        .Rationals(Ifd::kGps, kLongitude, {{13, 1}, {15, 1}, {0, 1}});
    const ExifInfo info = ReadRecord(exif);
    EXPECT_DOUBLE_EQ(info.gps_latitude, c.latitude) << c.latitude_ref;
    EXPECT_DOUBLE_EQ(info.gps_longitude, c.longitude) << c.longitude_ref;
  }
}

TEST_P(ExifPosition, OtherReferencesLeaveTheSign) {
  for (const char* reference : {"", "s", "w", "?", "NS", " S"}) {
    ExifBlock exif(GetParam());
    exif.Ascii(Ifd::kGps, kLatitudeRef, reference).Rationals(Ifd::kGps, kLatitude, kHalfPast52);
    EXPECT_DOUBLE_EQ(Latitude(exif), 52.5) << reference;
  }
  EXPECT_DOUBLE_EQ(Latitude(exif_.Rationals(Ifd::kGps, kLatitude, kHalfPast52)), 52.5);
}

TEST_P(ExifPosition, MinutesAndSecondsAreFractionsOfADegree) {
  exif_.Rationals(Ifd::kGps, kLatitude, {{48, 1}, {512345, 10000}, {3599, 100}});
  EXPECT_DOUBLE_EQ(Latitude(exif_), 48.0 + 51.2345 / 60.0 + 35.99 / 3600.0);
  ExifBlock degrees(GetParam());
  degrees.Rationals(Ifd::kGps, kLatitude, {{3735928559U, 4000000000U}, {0, 1}, {0, 1}});
  EXPECT_DOUBLE_EQ(Latitude(degrees), 3735928559.0 / 4000000000.0);
}

TEST_P(ExifPosition, AZeroDenominatorCountsAsZero) {
  exif_.Rationals(Ifd::kGps, kLatitude, {{52, 1}, {30, 0}, {36, 1}});
  EXPECT_DOUBLE_EQ(Latitude(exif_), 52.01);
  ExifBlock all(GetParam());
  all.Rationals(Ifd::kGps, kLatitude, {{0, 0}, {0, 0}, {0, 0}});
  EXPECT_DOUBLE_EQ(Latitude(all), 0.0);
}

TEST_P(ExifPosition, MoreThanThreeFractionsAreEnough) {
  exif_.Rationals(Ifd::kGps, kLatitude, {{52, 1}, {30, 1}, {0, 1}, {99, 1}});
  EXPECT_DOUBLE_EQ(Latitude(exif_), 52.5);
}

TEST_P(ExifPosition, FewerThanThreeFractionsAreNoPosition) {
  exif_.Rationals(Ifd::kGps, kLatitude, {{52, 1}, {30, 1}}).Rationals(Ifd::kGps, kLongitude, {{13, 1}});
  EXPECT_TRUE(std::isnan(ReadRecord(exif_).gps_latitude));
  EXPECT_TRUE(std::isnan(ReadRecord(exif_).gps_longitude));
}

TEST_P(ExifPosition, FractionsThatRunOverTheEndAreNoPosition) {
  exif_.Ascii(Ifd::kGps, kLatitudeRef, "N")
      .Entry(Ifd::kGps, kLatitude, TiffFormat::kRational, 3, std::vector<uint8_t>(16, 1));
  EXPECT_TRUE(std::isnan(Latitude(exif_)));
}

TEST_P(ExifPosition, AReferenceAloneIsNoPosition) {
  exif_.Ascii(Ifd::kGps, kLatitudeRef, "S").Ascii(Ifd::kGps, kLongitudeRef, "W");
  EXPECT_TRUE(std::isnan(ReadRecord(exif_).gps_latitude));
  EXPECT_TRUE(std::isnan(ReadRecord(exif_).gps_longitude));
}

TEST_P(ExifPosition, OneCoordinateIsEnough) {
  exif_.Rationals(Ifd::kGps, kLongitude, kHalfPast52);
  EXPECT_TRUE(std::isnan(ReadRecord(exif_).gps_latitude));
  EXPECT_DOUBLE_EQ(ReadRecord(exif_).gps_longitude, 52.5);
}

TEST_P(ExifPosition, OtherFormatsAreNoPosition) {
  for (const TiffFormat format :
       {TiffFormat::kByte, TiffFormat::kAscii, TiffFormat::kShort, TiffFormat::kLong, TiffFormat::kUndefined,
        TiffFormat::kFloat, TiffFormat::kDouble}) {
    ExifBlock exif(GetParam());
    exif.Ascii(Ifd::kGps, kLatitudeRef, "N")
        .Entry(Ifd::kGps, kLatitude, format, 6, std::vector<uint8_t>(48, 1));
    EXPECT_TRUE(std::isnan(Latitude(exif))) << static_cast<int>(format);
  }
}

// As cameras write it: tag 1 is "R98", tag 2 the four bytes "0100".
TEST_P(ExifPosition, AnInteroperabilityVersionIsNoPosition) {
  exif_.Ascii(Ifd::kInteroperability, 1, "R98")
      .Entry(Ifd::kInteroperability, 2, TiffFormat::kUndefined, 4, {'0', '1', '0', '0'});
  EXPECT_TRUE(std::isnan(Latitude(exif_)));

  exif_.Ascii(Ifd::kGps, kLatitudeRef, "S").Rationals(Ifd::kGps, kLatitude, kHalfPast52);
  EXPECT_DOUBLE_EQ(Latitude(exif_), -52.5);
}

// libexif derives an entry's size from its components, but a caller may pass any entry.
TEST_P(ExifPosition, AnEntryOfTooFewBytesOrComponentsIsNoPosition) {
  exif_.Rationals(Ifd::kGps, kLatitude, kHalfPast52);
  const TempDir dir;
  const ExifDataPtr data = LoadExifData(WriteBytes(dir.File("a.jpg"), JpegWithExif(exif_.Serialize())));
  ASSERT_NE(data, nullptr);
  ExifEntry* const entry = exif_content_get_entry(data->ifd[EXIF_IFD_GPS], static_cast<ExifTag>(kLatitude));
  ASSERT_NE(entry, nullptr);
  ASSERT_EQ(entry->size, 24U);
  EXPECT_DOUBLE_EQ(ReadGpsCoordinate(*data, kLatitude, kLatitudeRef), 52.5);
  entry->size = 23;
  EXPECT_TRUE(std::isnan(ReadGpsCoordinate(*data, kLatitude, kLatitudeRef)));
  entry->size = 24;
  entry->components = 2;
  EXPECT_TRUE(std::isnan(ReadGpsCoordinate(*data, kLatitude, kLatitudeRef)));
}

TEST_P(ExifPosition, IsReadByTag) {
  exif_.Ascii(Ifd::kGps, kLatitudeRef, "N")
      .Rationals(Ifd::kGps, kLatitude, kHalfPast52)
      .Ascii(Ifd::kGps, kLongitudeRef, "W")
      .Rationals(Ifd::kGps, kLongitude, {{13, 1}, {15, 1}, {0, 1}});
  const TempDir dir;
  const ExifDataPtr data = LoadExifData(WriteBytes(dir.File("a.jpg"), JpegWithExif(exif_.Serialize())));
  ASSERT_NE(data, nullptr);
  EXPECT_DOUBLE_EQ(ReadGpsCoordinate(*data, kLatitude, kLatitudeRef), 52.5);
  EXPECT_DOUBLE_EQ(ReadGpsCoordinate(*data, kLongitude, kLongitudeRef), -13.25);
  EXPECT_DOUBLE_EQ(ReadGpsCoordinate(*data, kLatitude, kLongitudeRef), -52.5);
  EXPECT_TRUE(std::isnan(ReadGpsCoordinate(*data, kLatitudeRef, kLatitude)));
  EXPECT_TRUE(std::isnan(ReadGpsCoordinate(*data, 22, 21)));
}

}  // namespace
}  // namespace lumvik::test
