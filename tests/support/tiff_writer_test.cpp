#include "support/tiff_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <opencv2/imgcodecs.hpp>
#include <vector>

#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

TEST(TiffWriter, WritesWhatOthersRead) {
  cv::Mat gray(5, 7, CV_8UC1);
  cv::RNG(1).fill(gray, cv::RNG::UNIFORM, 0, 256);
  TiffDirectory directory;
  directory.SetLongs(tag::kImageWidth, {7});
  directory.SetLongs(tag::kImageLength, {5});
  directory.SetShorts(tag::kBitsPerSample, {8});
  directory.SetShorts(tag::kCompression, {1});
  directory.SetShorts(tag::kPhotometric, {1});
  directory.SetShorts(tag::kSamplesPerPixel, {1});
  directory.SetLongs(tag::kRowsPerStrip, {5});
  directory.SetAscii(tag::kMake, "someone");
  directory.SetData(tag::kStripOffsets, tag::kStripByteCounts, {gray.datastart, gray.dataend});
  const cv::Mat read = cv::imdecode(directory.Serialize(), cv::IMREAD_UNCHANGED);
  ASSERT_EQ(read.size(), gray.size());
  ASSERT_EQ(read.type(), gray.type());
  EXPECT_EQ(cv::norm(read, gray, cv::NORM_INF), 0);
}

TEST(TiffWriter, ValuesStartAtEvenPlaces) {
  TiffDirectory directory;
  directory.SetAscii(tag::kMake, "even");  // five bytes with the NUL
  directory.SetLongs(tag::kModel, {0x11223344, 0x55667788});
  const std::vector<uint8_t> file = directory.Serialize();
  const std::vector<uint8_t> value = {0x44, 0x33, 0x22, 0x11, 0x88, 0x77, 0x66, 0x55};
  const auto place = std::search(file.begin(), file.end(), value.begin(), value.end());
  ASSERT_NE(place, file.end());
  EXPECT_EQ((place - file.begin()) % 2, 0);
}

TEST(TiffWriter, TheLastValueOfATagCounts) {
  TiffDirectory once, twice;
  once.SetShorts(tag::kCompression, {7});
  twice.SetLongs(tag::kCompression, {1, 2, 3});
  twice.SetShorts(tag::kCompression, {7});
  EXPECT_EQ(twice.Serialize(), once.Serialize());
}

TEST(TiffWriter, AnOffsetCanBeSpoilt) {
  TiffDirectory plain, overridden;
  plain.SetLongs(tag::kStripOffsets, {123456});
  plain.SetLongs(tag::kStripByteCounts, {3});
  plain.SetLongs(tag::kSubIfds, {234567});
  overridden.SetData(tag::kStripOffsets, tag::kStripByteCounts, {1, 2, 3});
  overridden.SetDirectory(tag::kSubIfds, plain);
  overridden.SetLongs(tag::kStripOffsets, {123456});
  overridden.SetLongs(tag::kSubIfds, {234567});
  EXPECT_EQ(overridden.Serialize(), plain.Serialize());
}

}  // namespace
}  // namespace lumvik::test
