#include "image/exif_splice.h"

#include <gtest/gtest.h>

#include <opencv2/core.hpp>

namespace lumvik::test {
namespace {

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

// A segment with `size` bytes after its length field.
Bytes Segment(uint8_t marker, uint16_t size, uint8_t fill = 0x11) {
  const auto length = static_cast<uint16_t>(size + 2);
  return Concat({{0xFF, marker, static_cast<uint8_t>(length >> 8U), static_cast<uint8_t>(length & 0xFFU)},
                 Bytes(size, fill)});
}

const Bytes kTables = Concat({Segment(kDqt, 65), Segment(kApp0, 4), {0xFF, 0xD9}});

// Where the old header ends, by definition: after the start marker, skip APP0 and APP1 segments while more
// than three bytes remain.
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

// Lengths below 2 are invalid: the search for the next segment then continues inside this one.
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

}  // namespace
}  // namespace lumvik::test
