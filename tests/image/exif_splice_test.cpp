#include "image/exif_splice.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <opencv2/imgcodecs.hpp>

#include "image/exif_data.h"
#include "image/exif_info.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<uint8_t>;

constexpr uint8_t kApp0 = 0xE0, kApp1 = 0xE1, kApp2 = 0xE2, kDqt = 0xDB;

Bytes Concat(const std::vector<Bytes>& parts) {
  Bytes all;
  for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

const Bytes kStart = {0xFF, 0xD8};
const Bytes kExif = {'E', 'x', 'i', 'f', 0, 0, 'M', 'M', 0, 42};
const Bytes kNewSegment = Concat({{0xFF, 0xE1, 0x00, 0x0C}, kExif});

// A segment with `size` bytes behind its length.
Bytes Segment(uint8_t marker, uint16_t size, uint8_t fill = 0x11) {
  const auto length = static_cast<uint16_t>(size + 2);
  return Concat({{0xFF, marker, static_cast<uint8_t>(length >> 8U), static_cast<uint8_t>(length & 0xFFU)},
                 Bytes(size, fill)});
}

const Bytes kTables = Concat({Segment(kDqt, 65), Segment(kApp0, 4), {0xFF, 0xD9}});

// Where the old header ends, by the words: on from the start marker while there are more than three bytes
// to come and they begin an APP0 or APP1 segment.
Bytes SplicedPlainly(const Bytes& jpeg, const Bytes& exif) {
  size_t position = 2;
  bool more = jpeg.size() > 5;
  while (more && jpeg[position] == 0xFF && (jpeg[position + 1] == kApp0 || jpeg[position + 1] == kApp1)) {
    position += size_t{jpeg[position + 2]} * 256U + jpeg[position + 3] + 2U;
    more = position - 2 + 5 < jpeg.size();
  }
  const size_t length = (exif.size() + 2) % 65536;
  Bytes result = {
      0xFF, 0xD8, 0xFF, 0xE1, static_cast<uint8_t>(length / 256), static_cast<uint8_t>(length % 256)};
  for (const uint8_t byte : exif) result.push_back(byte);
  for (size_t i = position; i < jpeg.size(); ++i) result.push_back(jpeg[i]);
  return result;
}

TEST(SpliceExif, ReplacesJfifAndOldExif) {
  const Bytes jpeg = Concat({kStart, Segment(kApp0, 14), Segment(kApp1, 300), kTables});
  EXPECT_EQ(SpliceExif(jpeg, kExif), Concat({kStart, kNewSegment, kTables}));
}

TEST(SpliceExif, ReplacesAnyNumberOfHeadersInAnyOrder) {
  const Bytes jpeg = Concat({kStart, Segment(kApp1, 40), Segment(kApp0, 14), Segment(kApp1, 70),
                             Segment(kApp1, 0), Segment(kApp0, 1000), kTables});
  EXPECT_EQ(SpliceExif(jpeg, kExif), Concat({kStart, kNewSegment, kTables}));
}

TEST(SpliceExif, KeepsEverythingBehindTheHeaders) {
  const Bytes profile = Concat({Segment(kApp2, 50), Segment(kApp1, 50), Segment(kApp0, 14)});
  EXPECT_EQ(SpliceExif(Concat({kStart, Segment(kApp0, 14), profile, kTables}), kExif),
            Concat({kStart, kNewSegment, profile, kTables}));
  EXPECT_EQ(SpliceExif(Concat({kStart, kTables}), kExif), Concat({kStart, kNewSegment, kTables}));
}

TEST(SpliceExif, WhatIsNoMarkerEndsTheHeaders) {
  const Bytes rest = {0x00, 0xE0, 0x00, 0x04, 1, 2, 3, 4, 5, 6};
  EXPECT_EQ(SpliceExif(Concat({kStart, Segment(kApp0, 14), rest}), kExif),
            Concat({kStart, kNewSegment, rest}));
  EXPECT_EQ(SpliceExif(Concat({kStart, rest}), kExif), Concat({kStart, kNewSegment, rest}));
}

TEST(SpliceExif, ASegmentThatRunsOverTheEndLeavesNothing) {
  EXPECT_EQ(SpliceExif(Concat({kStart, {0xFF, kApp0, 0xFF, 0xFF}, Bytes(20, 1)}), kExif),
            Concat({kStart, kNewSegment}));
  EXPECT_EQ(SpliceExif(Concat({kStart, Segment(kApp0, 14), {0xFF, kApp1, 0x00, 0x40}, Bytes(20, 1)}), kExif),
            Concat({kStart, kNewSegment}));
}

TEST(SpliceExif, ASegmentThatEndsWithTheFileLeavesNothing) {
  EXPECT_EQ(SpliceExif(Concat({kStart, Segment(kApp0, 14)}), kExif), Concat({kStart, kNewSegment}));
}

// Lengths below 2 contradict themselves: the next segment is looked for inside this one.
TEST(SpliceExif, ImpossibleLengthsAreTakenAsTheyAre) {
  const Bytes rest = {0x00, 0x01, 0x02, 0x03, 0x04, 0x05};
  EXPECT_EQ(SpliceExif(Concat({kStart, {0xFF, kApp0, 0x00, 0x00}, rest}), kExif),
            Concat({kStart, kNewSegment, {0x00, 0x00}, rest}));
  EXPECT_EQ(SpliceExif(Concat({kStart, {0xFF, kApp0, 0x00, 0x01, 0xFF}, rest}), kExif),
            Concat({kStart, kNewSegment, {0x01, 0xFF}, rest}));
}

TEST(SpliceExif, FilesOfFourOrFiveBytesKeepAllBehindTheStart) {
  EXPECT_EQ(SpliceExif({0xFF, 0xD8, 0xFF, kApp0}, kExif), Concat({kStart, kNewSegment, {0xFF, kApp0}}));
  EXPECT_EQ(SpliceExif({0xFF, 0xD8, 0xFF, kApp1, 0x00}, kExif),
            Concat({kStart, kNewSegment, {0xFF, kApp1, 0x00}}));
  EXPECT_EQ(SpliceExif({0xFF, 0xD8, 0xFF, kApp1, 0x00, 0x02}, kExif), Concat({kStart, kNewSegment}));
}

TEST(SpliceExif, EveryCutOfAFileIsSplicedLikeTheWholeOne) {
  const Bytes files[] = {
      Concat({kStart, Segment(kApp0, 14), Segment(kApp1, 30, 0xFF), kTables}),
      Concat({kStart, Segment(kApp1, 0), Segment(kApp1, 1), Segment(kApp0, 2), kTables}),
      Concat({kStart, {0xFF, kApp0, 0, 0, 0xFF, kApp0, 0, 0, 0xFF, kApp1, 0, 1}, kTables})};
  for (const Bytes& jpeg : files) {
    for (size_t size = 4; size <= jpeg.size(); ++size) {
      const Bytes cut(jpeg.begin(), jpeg.begin() + static_cast<std::ptrdiff_t>(size));
      ASSERT_EQ(SpliceExif(cut, kExif), SplicedPlainly(cut, kExif)) << size;
    }
  }
}

TEST(SpliceExif, RandomHeadersAreSplicedByTheWords) {
  cv::RNG random(9);
  const uint8_t bytes[] = {0xFF, 0xFF, kApp0, kApp1, 0x00, 0x00, 0x02, 0x05};
  for (int i = 0; i < 3000; ++i) {
    Bytes jpeg = kStart;
    const int size = random.uniform(2, 40);
    while (static_cast<int>(jpeg.size()) < size + 2) jpeg.push_back(bytes[random.uniform(0, 8)]);
    ASSERT_EQ(SpliceExif(jpeg, kExif), SplicedPlainly(jpeg, kExif)) << i;
  }
}

TEST(SpliceExif, TheLengthWrapsAbove65535) {
  const struct {
    size_t exif_size;
    uint8_t high, low;
  } cases[] = {{0, 0, 2},     {254, 1, 0},   {65533, 0xFF, 0xFF}, {65534, 0, 0},
               {65535, 0, 1}, {65536, 0, 2}, {200000, 0x0D, 0x42}};
  for (const auto& c : cases) {
    const Bytes exif(c.exif_size, 0x33);
    EXPECT_TRUE(SpliceExif(Concat({kStart, kTables}), exif) ==
                Concat({kStart, {0xFF, kApp1, c.high, c.low}, exif, kTables}))
        << c.exif_size;
  }
}

// A photograph with every kind of entry.
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

// What libexif makes of a file's block.
Bytes Serialised(const std::string& path) {
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
  const Bytes exif = Serialised(source);
  ASSERT_GT(exif.size(), 6U);
  EXPECT_EQ(Bytes(exif.begin(), exif.begin() + 6), (Bytes{'E', 'x', 'i', 'f', 0, 0}));
  EXPECT_EQ(ReadBytes(target), SplicedPlainly(PlainJpeg(), exif));
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
  EXPECT_EQ(ReadBytes(target), SplicedPlainly(PlainJpeg(), Serialised(source)));
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
  for (const Bytes& bytes : {Bytes{0xFF, 0xD8, 0xFF, kApp0}, Bytes{0xFF, 0xD8, 0xFF, kApp1, 0x00}}) {
    const std::string target = Write("target.jpg", bytes);
    EXPECT_TRUE(CopyExifToJpeg(source, target));
    EXPECT_EQ(ReadBytes(target), SplicedPlainly(bytes, Serialised(source)));
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
