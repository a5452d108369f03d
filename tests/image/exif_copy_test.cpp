// CopyExifToJpeg of image/exif_splice.h.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <opencv2/imgcodecs.hpp>

#include "image/exif_data.h"
#include "image/exif_info.h"
#include "image/exif_splice.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<uint8_t>;

// A photo with every kind of entry.
ExifBlock Photograph(ByteOrder order) {
  ExifBlock exif(order);
  exif.Ascii(Ifd::kZero, EXIF_TAG_MAKE, "Maker")
      .Ascii(Ifd::kZero, EXIF_TAG_MODEL, "Model 7")
      .Shorts(Ifd::kZero, EXIF_TAG_ORIENTATION, {6})
      .Ascii(Ifd::kExif, EXIF_TAG_LENS_MODEL, "FE 24-105mm F4 G OSS")
      .Rationals(Ifd::kExif, EXIF_TAG_FOCAL_LENGTH, {{105, 2}})
      .Rationals(Ifd::kExif, EXIF_TAG_FNUMBER, {{28, 10}})
      .Rationals(Ifd::kExif, EXIF_TAG_EXPOSURE_TIME, {{1, 250}})
      .Shorts(Ifd::kExif, EXIF_TAG_ISO_SPEED_RATINGS, {400})
      .Ascii(Ifd::kExif, EXIF_TAG_DATE_TIME_ORIGINAL, "2019:12:31 23:59:58")
      .Shorts(Ifd::kExif, EXIF_TAG_PIXEL_X_DIMENSION, {6000})
      .Longs(Ifd::kExif, EXIF_TAG_PIXEL_Y_DIMENSION, {4000})
      .Ascii(Ifd::kGps, EXIF_TAG_GPS_LATITUDE_REF, "S")
      .Rationals(Ifd::kGps, EXIF_TAG_GPS_LATITUDE, {{52, 1}, {30, 1}, {0, 1}})
      .Ascii(Ifd::kGps, EXIF_TAG_GPS_LONGITUDE_REF, "W")
      .Rationals(Ifd::kGps, EXIF_TAG_GPS_LONGITUDE, {{13, 1}, {15, 1}, {0, 1}});
  return exif;
}

// A file's block as libexif reads it.
Bytes Serialized(const std::string& path) {
  const ExifDataPtr data = LoadExifData(path);
  if (data == nullptr) return {};
  unsigned char* bytes = nullptr;
  unsigned size = 0;
  exif_data_save_data(data.get(), &bytes, &size);
  Bytes result(bytes, bytes + size);
  std::free(bytes);
  return result;
}

class CopyExif : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const Bytes& bytes) const {
    return WriteBytes(dir_.File(name), bytes);
  }
  std::string WriteSource(ByteOrder order = ByteOrder::kLittle) const {
    return Write("source.jpg", JpegWithExif(Photograph(order).Serialize()));
  }

  TempDir dir_;
};

TEST_F(CopyExif, TheFieldsArriveInTheTarget) {
  for (const ByteOrder order : {ByteOrder::kLittle, ByteOrder::kBig}) {
    const std::string source = WriteSource(order);
    const std::string target = Write("target.jpg", PlainJpeg());
    ASSERT_TRUE(CopyExifToJpeg(source, target));
    ExifInfo from, to;
    ASSERT_TRUE(ReadExifFile(source, from));
    ASSERT_TRUE(ReadExifFile(target, to));
    EXPECT_EQ(std::memcmp(&from, &to, sizeof(ExifInfo)), 0);
    EXPECT_STREQ(to.model, "Model 7");
    EXPECT_EQ(to.orientation, 6);
    EXPECT_DOUBLE_EQ(to.gps_longitude, -13.25);
  }
}

TEST_F(CopyExif, OfPhotographs) {
  for (const std::string name : {"cat.jpg", "eiffel_gps_north_east.jpg", "tower_orientation8.jpg"}) {
    const std::string source = LUMVIK_TEST_DATA "/" + name;
    const std::string target = Write("target.jpg", PlainJpeg());
    ASSERT_TRUE(CopyExifToJpeg(source, target)) << name;
    ExifInfo from, to;
    ASSERT_TRUE(ReadExifFile(source, from));
    ASSERT_TRUE(ReadExifFile(target, to));
    EXPECT_EQ(std::memcmp(&from, &to, sizeof(ExifInfo)), 0) << name;
  }
}

TEST_F(CopyExif, TheFileIsTheSplicedOne) {
  const std::string source = WriteSource();
  const std::string target = Write("target.jpg", PlainJpeg());
  ASSERT_TRUE(CopyExifToJpeg(source, target));
  const Bytes exif = Serialized(source);
  ASSERT_GT(exif.size(), 6U);
  EXPECT_EQ(Bytes(exif.begin(), exif.begin() + 6), (Bytes{'E', 'x', 'i', 'f', 0, 0}));
  EXPECT_EQ(ReadBytes(target), SpliceExif(PlainJpeg(), exif));
}

TEST_F(CopyExif, ThePixelsStay) {
  const std::string target = Write("target.jpg", PlainJpeg());
  const cv::Mat before = cv::imread(target, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
  ASSERT_TRUE(CopyExifToJpeg(WriteSource(), target));
  EXPECT_TRUE(SameBytes(cv::imread(target, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION), before));
}

TEST_F(CopyExif, AnOldBlockIsReplaced) {
  ExifBlock old;
  old.Ascii(Ifd::kZero, EXIF_TAG_MAKE, std::string(500, 'x'))
      .Ascii(Ifd::kExif, EXIF_TAG_LENS_MODEL, "old lens");
  const std::string target = Write("target.jpg", JpegWithExif(old.Serialize()));
  const std::string source = WriteSource();
  ASSERT_TRUE(CopyExifToJpeg(source, target));
  EXPECT_EQ(ReadBytes(target), SpliceExif(PlainJpeg(), Serialized(source)));
}

TEST_F(CopyExif, AFileMayBeItsOwnSource) {
  const std::string path = WriteSource();
  ASSERT_TRUE(CopyExifToJpeg(path, path));
  ExifInfo info;
  ASSERT_TRUE(ReadExifFile(path, info));
  EXPECT_STREQ(info.make, "Maker");
}

TEST_F(CopyExif, NamesMayHoldSpacesAndAnyLetters) {
  const std::string source =
      Write("\xC3\xA9t\xC3\xA9 1.jpg", JpegWithExif(Photograph(ByteOrder::kBig).Serialize()));
  const std::string target = Write("\xE5\x86\x99\xE7\x9C\x9F 2.jpg", PlainJpeg());
  EXPECT_TRUE(CopyExifToJpeg(source, target));
  ExifInfo info;
  EXPECT_TRUE(ReadExifFile(target, info));
}

TEST_F(CopyExif, WithoutABlockTheTargetStays) {
  const std::string target = Write("target.jpg", PlainJpeg());
  for (const std::string& source :
       {dir_.File("missing.jpg"), std::string(), dir_.path().string(), Write("plain.jpg", PlainJpeg()),
        Write("empty", {}), std::string(LUMVIK_SAMPLES "/sample_small.ARW"),
        std::string(LUMVIK_TEST_DATA "/no_thumb.dng")}) {
    EXPECT_FALSE(CopyExifToJpeg(source, target)) << source;
    EXPECT_EQ(ReadBytes(target), PlainJpeg()) << source;
  }
}

TEST_F(CopyExif, WhatIsNoJpegStays) {
  const std::string source = WriteSource();
  for (const Bytes& bytes :
       {Bytes{}, Bytes{0xFF}, Bytes{0xFF, 0xD8, 0xFF}, Bytes{0xFF, 0xD7, 0xFF, 0xE0, 0, 2, 1, 2},
        Bytes{0x89, 'P', 'N', 'G', 13, 10, 26, 10}, Bytes{0xD8, 0xFF, 0xFF, 0xE0}}) {
    const std::string target = Write("target.jpg", bytes);
    EXPECT_FALSE(CopyExifToJpeg(source, target));
    EXPECT_EQ(ReadBytes(target), bytes);
  }
}

TEST_F(CopyExif, TheShortestJpegIsRewritten) {
  const std::string source = WriteSource();
  for (const Bytes& bytes : {Bytes{0xFF, 0xD8, 0xFF, 0xE0}, Bytes{0xFF, 0xD8, 0xFF, 0xE1, 0x00}}) {
    const std::string target = Write("target.jpg", bytes);
    EXPECT_TRUE(CopyExifToJpeg(source, target));
    EXPECT_EQ(ReadBytes(target), SpliceExif(bytes, Serialized(source)));
  }
}

TEST_F(CopyExif, AMissingTargetIsNotMade) {
  EXPECT_FALSE(CopyExifToJpeg(WriteSource(), dir_.File("missing.jpg")));
  EXPECT_FALSE(fs::exists(dir_.File("missing.jpg")));
  EXPECT_FALSE(CopyExifToJpeg(WriteSource(), dir_.File("no/such/folder.jpg")));
  EXPECT_FALSE(CopyExifToJpeg(WriteSource(), ""));
}

TEST_F(CopyExif, AFolderIsNoTarget) {
  fs::create_directory(dir_.File("folder.jpg"));
  EXPECT_FALSE(CopyExifToJpeg(WriteSource(), dir_.File("folder.jpg")));
}

TEST_F(CopyExif, AProtectedTargetStays) {
  fs::permissions(dir_.path(), fs::perms::all);
  const std::string source = WriteSource();
  const std::string target = Write("target.jpg", PlainJpeg());
  const fs::perms readable = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
  for (const fs::perms perms : {readable, fs::perms::none}) {
    fs::permissions(target, perms);
    const OrdinaryUser user;
    EXPECT_FALSE(CopyExifToJpeg(source, target));
  }
  fs::permissions(target, readable);
  EXPECT_EQ(ReadBytes(target), PlainJpeg());
}

TEST_F(CopyExif, AFullDiskFails) {
  const std::string source = WriteSource();
  const std::string target = Write("target.jpg", PlainJpeg());
  const FileSizeLimit limit(100);
  EXPECT_FALSE(CopyExifToJpeg(source, target));
}

}  // namespace
}  // namespace lumvik::test
