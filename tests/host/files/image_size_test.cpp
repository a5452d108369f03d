// Sizes of photographs from their headers.
#include "files/image_size.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <opencv2/imgcodecs.hpp>
#include <string>
#include <utility>
#include <vector>

#include "lumvik_host.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::TempDir;

class ImageSizeTest : public ::testing::Test {
 protected:
  // Writes an image of this size and returns its path.
  std::string Written(const std::string& name, cv::Size size, const std::vector<int>& options = {}) const {
    EXPECT_TRUE(cv::imwrite(folder_.File(name), cv::Mat(size, CV_8UC3, cv::Scalar(10, 100, 200)), options));
    return folder_.File(name);
  }

  static void ExpectSize(const std::string& path, cv::Size expected) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    ASSERT_EQ(lumvik_host_read_size(path.c_str(), &width, &height), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    EXPECT_EQ(cv::Size(width, height), expected) << path;
  }

  static lumvik_host_status StatusOf(const std::string& path) {
    std::int32_t width = -1;
    std::int32_t height = -1;
    const lumvik_host_status status = lumvik_host_read_size(path.c_str(), &width, &height);
    EXPECT_EQ(cv::Size(width, height), cv::Size(-1, -1)) << path;
    return status;
  }

  const TempDir folder_;
};

TEST_F(ImageSizeTest, EveryFormatStatesIt) {
  for (const cv::Size size : {cv::Size(31, 17), cv::Size(1, 300), cv::Size(1000, 2)}) {
    for (const char* name : {"a.jpg", "a.png", "a.tif", "a.bmp", "a.webp"})
      ExpectSize(Written(name, size), size);
    ExpectSize(Written("lossy.webp", size, {cv::IMWRITE_WEBP_QUALITY, 50}), size);
  }
}

TEST_F(ImageSizeTest, OfARawFileItIsTheFullSize) {
  const std::string raw = LUMVIK_SAMPLES "/sample_small.ARW";
  lumvik_host_photo* photo = nullptr;
  ASSERT_EQ(lumvik_host_open(raw.c_str(), nullptr, &photo), LUMVIK_HOST_OK);
  lumvik_host_photo_info info{};
  info.struct_size = sizeof info;
  EXPECT_EQ(lumvik_host_get_info(photo, &info), LUMVIK_HOST_OK);
  lumvik_host_close(photo);
  ExpectSize(raw, {info.width, info.height});
}

TEST_F(ImageSizeTest, OfARotatedPhotographItIsAsStored) {
  const std::string tower = LUMVIK_TEST_DATA "/tower_orientation8.jpg";
  ExpectSize(tower, cv::imread(tower, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION).size());
}

TEST_F(ImageSizeTest, AnExtendedWebpStatesTheCanvas) {
  const std::string file("RIFF\x1A\0\0\0WEBPVP8X\x0A\0\0\0\0\0\0\0\x1E\0\0\x10\0\0", 30);
  const auto size = SizeInHeader(file, LUMVIK_HOST_FORMAT_WEBP);
  ASSERT_TRUE(size);
  EXPECT_EQ(size->width, 31U);
  EXPECT_EQ(size->height, 17U);
}

TEST_F(ImageSizeTest, ABmpMayStoreItsRowsFromTheTop) {
  std::string file(30, '\0');
  file[14] = 40;
  file[18] = 31;
  file.replace(22, 4, "\xEF\xFF\xFF\xFF", 4);  // -17
  const auto size = SizeInHeader(file, LUMVIK_HOST_FORMAT_BMP);
  ASSERT_TRUE(size);
  EXPECT_EQ(size->width, 31U);
  EXPECT_EQ(size->height, 17U);
}

TEST_F(ImageSizeTest, DamagedHeadersAreRefused) {
  const struct {
    const char* name;
    lumvik_host_format format;
  } cases[] = {{"a.jpg", LUMVIK_HOST_FORMAT_JPEG},
               {"a.png", LUMVIK_HOST_FORMAT_PNG},
               {"a.tif", LUMVIK_HOST_FORMAT_TIFF},
               {"a.bmp", LUMVIK_HOST_FORMAT_BMP},
               {"a.webp", LUMVIK_HOST_FORMAT_WEBP}};
  for (const auto& c : cases) {
    const std::vector<std::uint8_t> bytes = lumvik::test::ReadBytes(Written(c.name, {31, 17}));
    const std::string whole(bytes.begin(), bytes.end());
    EXPECT_FALSE(SizeInHeader("", c.format)) << c.name;
    EXPECT_FALSE(SizeInHeader(std::string(whole.size(), '\0'), c.format)) << c.name;
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const auto stated = SizeInHeader(std::string_view(whole).substr(0, size), c.format);
      EXPECT_TRUE(!stated || (stated->width == 31 && stated->height == 17)) << c.name << ' ' << size;
    }
  }
}

// Entries for a width of 31 and a height of 17, both LONG.
std::string SizeEntries(bool is_big_tiff) {
  std::string entries;
  for (const auto& [tag, value] : {std::pair{'\0', '\x1F'}, std::pair{'\x01', '\x11'}}) {
    entries += std::string{tag, 1, 4, 0, 1, 0, 0, 0} + std::string(is_big_tiff ? 4 : 0, '\0');
    entries += std::string{value, 0, 0, 0} + std::string(is_big_tiff ? 4 : 0, '\0');
  }
  return entries;
}

TEST_F(ImageSizeTest, ADirectoryMayFollowGigabytesOfPixels) {
  const std::string path = folder_.File("a.tif");
  const struct {
    std::uint64_t offset;
    std::string header;
    std::string directory;
  } cases[] = {
      {0xFFFFFF00, std::string("II*\0\0\xFF\xFF\xFF", 8),
       std::string{2, 0} + SizeEntries(false) + std::string(4, '\0')},
      {0x1'0000'0100, std::string("II+\0\x08\0\0\0\0\x01\0\0\x01\0\0\0", 16),
       std::string{2, 0, 0, 0, 0, 0, 0, 0} + SizeEntries(true) + std::string(8, '\0')},
  };
  for (const auto& c : cases) {
    std::ofstream file(path, std::ios::binary);
    file << c.header;
    file.seekp(static_cast<std::streamoff>(c.offset));  // leaves a hole that takes no space
    file << c.directory;
    file.close();
    ASSERT_TRUE(file.good());
    ExpectSize(path, {31, 17});
  }
}

TEST_F(ImageSizeTest, TiffsHaveTwoByteOrders) {
  const std::string big(
      "MM\0*\0\0\0\x08\0\x02\x01\0\0\x03\0\0\0\x01\0\x1F\0\0\x01\x01\0\x04\0\0\0\x01\0\0\0\x11", 34);
  lumvik::test::WriteBytes(folder_.File("a.tif"), {big.begin(), big.end()});
  ExpectSize(folder_.File("a.tif"), {31, 17});
}

TEST_F(ImageSizeTest, CutTiffsAreDamaged) {
  const std::vector<std::uint8_t> whole = lumvik::test::ReadBytes(Written("a.tif", {31, 17}));
  const std::string cut = folder_.File("cut.tif");
  for (std::size_t size = 4; size < whole.size(); size += 7) {
    lumvik::test::WriteBytes(cut, {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
    std::int32_t width = 0;
    std::int32_t height = 0;
    if (lumvik_host_read_size(cut.c_str(), &width, &height) == LUMVIK_HOST_OK) {
      EXPECT_EQ(cv::Size(width, height), cv::Size(31, 17)) << size;
    } else {
      EXPECT_EQ(StatusOf(cut), LUMVIK_HOST_DAMAGED) << size;
    }
  }
}

TEST_F(ImageSizeTest, LongMetadataMayComeFirst) {
  const std::vector<std::uint8_t> plain = lumvik::test::ReadBytes(Written("a.jpg", {31, 17}));
  std::vector<std::uint8_t> jpeg(plain.begin(), plain.begin() + 2);
  for (int segment = 0; segment < 20; ++segment) {
    jpeg.insert(jpeg.end(), {0xFF, 0xE5, 0xFF, 0xFF});
    jpeg.resize(jpeg.size() + 65533);
  }
  jpeg.insert(jpeg.end(), plain.begin() + 2, plain.end());
  ExpectSize(lumvik::test::WriteBytes(folder_.File("b.jpg"), jpeg), {31, 17});
}

TEST_F(ImageSizeTest, FailuresHaveTheirStatuses) {
  EXPECT_EQ(StatusOf(folder_.File("missing.jpg")), LUMVIK_HOST_NOT_FOUND);
  lumvik::test::WriteBytes(folder_.File("text.jpg"), {'t', 'e', 'x', 't'});
  EXPECT_EQ(StatusOf(folder_.File("text.jpg")), LUMVIK_HOST_NOT_A_PHOTOGRAPH);
  lumvik::test::WriteBytes(folder_.File("cut.png"), {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'});
  EXPECT_EQ(StatusOf(folder_.File("cut.png")), LUMVIK_HOST_DAMAGED);
  std::int32_t size = 0;
  EXPECT_EQ(lumvik_host_read_size(nullptr, &size, &size), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_read_size("a.jpg", nullptr, &size), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_read_size("a.jpg", &size, nullptr), LUMVIK_HOST_INVALID_ARGUMENT);
}

}  // namespace
}  // namespace lumvik::host::test
