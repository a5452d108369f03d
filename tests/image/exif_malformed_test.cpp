// Malformed EXIF blocks, read by image/exif_info.h.
#include <cmath>
#include <utility>

#include "support/exif_record.h"

namespace lumvik::test {
namespace {

// Each test in both byte orders.
class MalformedExif : public ::testing::TestWithParam<ByteOrder> {
 protected:
  ExifBlock exif_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(ExifInfo, MalformedExif, ::testing::Values(ByteOrder::kLittle, ByteOrder::kBig),
                         ByteOrderName);

// The numeric tags, each with 16 arbitrary bytes.
TEST_P(MalformedExif, NumbersOfAnotherFormatAreZero) {
  const std::pair<Ifd, uint16_t> rationals[] = {{Ifd::kExif, EXIF_TAG_FOCAL_LENGTH},
                                                {Ifd::kExif, EXIF_TAG_FNUMBER},
                                                {Ifd::kExif, EXIF_TAG_EXPOSURE_TIME},
                                                {Ifd::kExif, EXIF_TAG_APERTURE_VALUE}};
  const std::pair<Ifd, uint16_t> integers[] = {{Ifd::kExif, EXIF_TAG_ISO_SPEED_RATINGS},
                                               {Ifd::kExif, EXIF_TAG_PIXEL_X_DIMENSION},
                                               {Ifd::kExif, EXIF_TAG_PIXEL_Y_DIMENSION},
                                               {Ifd::kZero, EXIF_TAG_ORIENTATION}};
  const std::vector<uint8_t> value(16, 7);
  for (const auto& [ifd, tag] : rationals) {
    for (const TiffFormat format :
         {TiffFormat::kByte, TiffFormat::kAscii, TiffFormat::kShort, TiffFormat::kLong,
          TiffFormat::kUndefined, TiffFormat::kFloat, TiffFormat::kDouble}) {
      ExifBlock exif(GetParam());
      ExpectEmpty(ReadRecord(exif.Entry(ifd, tag, format, 2, value)));
    }
  }
  for (const auto& [ifd, tag] : integers) {
    for (const TiffFormat format : {TiffFormat::kAscii, TiffFormat::kRational, TiffFormat::kUndefined,
                                    TiffFormat::kSignedRational, TiffFormat::kFloat, TiffFormat::kDouble}) {
      ExifBlock exif(GetParam());
      ExpectEmpty(ReadRecord(exif.Entry(ifd, tag, format, 2, value)));
    }
  }
}

TEST_P(MalformedExif, EntriesWithoutComponentsAreAbsent) {
  exif_.Ascii(Ifd::kZero, EXIF_TAG_ARTIST, "somebody")
      .Entry(Ifd::kZero, EXIF_TAG_MAKE, TiffFormat::kAscii, 0, {})
      .Entry(Ifd::kZero, EXIF_TAG_ORIENTATION, TiffFormat::kShort, 0, {0, 6})
      .Entry(Ifd::kExif, EXIF_TAG_FNUMBER, TiffFormat::kRational, 0, {})
      .Entry(Ifd::kGps, EXIF_TAG_GPS_LATITUDE, TiffFormat::kRational, 0, {});
  ExpectEmpty(ReadRecord(exif_));
}

TEST_P(MalformedExif, EntriesThatOverflowTheFileAreAbsent) {
  for (const uint32_t count : {100U, 0x10000U, 0x1FFFFFFFU, 0x20000001U, 0x80000001U, 0xFFFFFFFFU}) {
    SCOPED_TRACE(count);
    ExifBlock exif(GetParam());
    exif.Ascii(Ifd::kZero, EXIF_TAG_ARTIST, "somebody")
        .Entry(Ifd::kZero, EXIF_TAG_MAKE, TiffFormat::kAscii, count, {'x'})
        .Entry(Ifd::kZero, EXIF_TAG_ORIENTATION, TiffFormat::kShort, count, {0, 6})
        .Entry(Ifd::kExif, EXIF_TAG_PIXEL_X_DIMENSION, TiffFormat::kLong, count, {0, 6})
        .Entry(Ifd::kExif, EXIF_TAG_FNUMBER, TiffFormat::kRational, count, {1})
        .Entry(Ifd::kGps, EXIF_TAG_GPS_LATITUDE, TiffFormat::kRational, count, {1});
    ExpectEmpty(ReadRecord(exif));
  }
}

TEST_P(MalformedExif, AFractionThatRunsOverTheEndIsAbsent) {
  exif_.Entry(Ifd::kExif, EXIF_TAG_FNUMBER, TiffFormat::kRational, 1, {1, 2, 3, 4, 5});
  ExpectEmpty(ReadRecord(exif_));
}

// libexif reads the two bytes after the block as part of it.
TEST(ExifFiles, OfACutBlockWholeValuesAreRead) {
  ExifBlock exif(ByteOrder::kBig);
  exif.Ascii(Ifd::kZero, EXIF_TAG_MAKE, "Maker")
      .Rationals(Ifd::kExif, EXIF_TAG_FNUMBER, {{28, 10}})
      .Rationals(Ifd::kGps, EXIF_TAG_GPS_LATITUDE, {{48, 1}, {30, 1}, {36, 1}});
  const std::vector<uint8_t> whole = exif.Serialize();
  const size_t end_of_f_number = whole.size() - 24, end_of_make = end_of_f_number - 8;
  const TempDir dir;
  for (size_t size = 0; size < whole.size(); ++size) {
    SCOPED_TRACE(size);
    const std::vector<uint8_t> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    ExifInfo info = UsedRecord();
    const bool found = ReadExifFile(WriteBytes(dir.File("a.jpg"), JpegWithExif(cut)), info);
    if (!found || size + 2 < end_of_make) ExpectEmpty(info);
    EXPECT_TRUE(size < end_of_make || info.make == std::string("Maker"));
    EXPECT_TRUE(size + 2 >= end_of_f_number || info.f_number == 0.0F);
    EXPECT_TRUE(size < end_of_f_number || info.f_number == 2.8F);
    EXPECT_TRUE(size + 2 >= whole.size() || std::isnan(info.gps_latitude));
  }
}

TEST(ExifFiles, FilesWithoutABlockClearTheRecord) {
  const TempDir dir;
  for (const std::string& path :
       {dir.File("missing"), std::string(), dir.path().string(),
        WriteBytes(dir.File("plain.jpg"), PlainJpeg()), WriteBytes(dir.File("empty"), {}),
        std::string(LUMVIK_SAMPLES "/sample_small.ARW"), std::string(LUMVIK_TEST_DATA "/no_thumb.dng")}) {
    ExifInfo info = UsedRecord();
    EXPECT_FALSE(ReadExifFile(path, info)) << path;
    ExpectEmpty(info);
  }
}

}  // namespace
}  // namespace lumvik::test
