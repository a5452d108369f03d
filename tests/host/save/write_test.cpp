// Writing files and PNGs.
#include <gtest/gtest.h>

#include <filesystem>
#include <opencv2/imgcodecs.hpp>
#include <string>
#include <vector>

#include "lumvik_host.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::BytesOf;
using lumvik::test::ReadBytes;
using lumvik::test::TempDir;

TEST(WriteFileTest, WritesBytesAndRespectsExistingFiles) {
  const TempDir dir;
  const std::string path = dir.File("a.bin");
  const std::vector<uint8_t> bytes = {0, 1, 255, 0};
  ASSERT_EQ(lumvik_host_write_file(path.c_str(), bytes.data(), bytes.size(), 0), LUMVIK_HOST_OK);
  EXPECT_EQ(ReadBytes(path), bytes);
  EXPECT_EQ(lumvik_host_write_file(path.c_str(), bytes.data(), 1, 0), LUMVIK_HOST_EXISTS);
  EXPECT_EQ(ReadBytes(path), bytes);
  EXPECT_EQ(lumvik_host_write_file(path.c_str(), bytes.data(), 1, 1), LUMVIK_HOST_OK);
  EXPECT_EQ(ReadBytes(path).size(), 1U);
}

TEST(WriteFileTest, NullIsInvalid) {
  const TempDir dir;
  EXPECT_EQ(lumvik_host_write_file(nullptr, "a", 1, 0), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_write_file(dir.File("a").c_str(), nullptr, 1, 0), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_STREQ(lumvik_host_last_error(), "data is null");
  EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

class WritePngTest : public ::testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Channels, WritePngTest, ::testing::Values(1, 3, 4));

TEST_P(WritePngTest, PixelsComeBack) {
  const TempDir dir;
  const std::string path = dir.File("a.png");
  cv::Mat pixels(5, 7, CV_8UC(GetParam()));
  cv::RNG(1).fill(pixels, cv::RNG::UNIFORM, 0, 256);
  ASSERT_EQ(lumvik_host_write_png(path.c_str(), pixels.data, pixels.cols, pixels.rows, GetParam(), nullptr),
            LUMVIK_HOST_OK);
  cv::Mat read = cv::imread(path, cv::IMREAD_UNCHANGED);
  ASSERT_EQ(read.type(), pixels.type());
  std::vector<cv::Mat> planes;
  cv::split(read, planes);
  if (GetParam() >= 3) std::swap(planes[0], planes[2]);  // OpenCV has blue first
  cv::merge(planes, read);
  EXPECT_EQ(BytesOf(read), BytesOf(pixels));
}

TEST(WritePngTest, InvalidShapesAreReportedAndNothingIsWritten) {
  const TempDir dir;
  const std::vector<uint8_t> pixels(100);
  const std::string path = dir.File("a.png");
  const auto status = [&](int width, int height, int channels) {
    return lumvik_host_write_png(path.c_str(), pixels.data(), width, height, channels, nullptr);
  };
  EXPECT_EQ(status(0, 1, 1), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(status(1, -1, 1), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(status(1, 1, 2), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_STREQ(lumvik_host_last_error(), "channels is 2; a PNG has 1, 3 or 4");
  EXPECT_EQ(lumvik_host_write_png(path.c_str(), nullptr, 1, 1, 1, nullptr), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

}  // namespace
}  // namespace lumvik::host::test
