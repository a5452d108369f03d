#include "image/image_writer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <opencv2/imgcodecs.hpp>
#include <stdexcept>

#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

cv::Mat SmallNoise(int type, int rows = 24, int cols = 33) {
  cv::Mat image(rows, cols, type);
  cv::RNG(5).fill(image, cv::RNG::UNIFORM, 0, image.depth() == CV_8U ? 256 : 65536);
  return image;
}

class ImageWriter : public ::testing::Test {
 protected:
  // The names in the folder.
  size_t Files() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(dir_.path()), fs::directory_iterator()));
  }

  TempDir dir_;
};

TEST_F(ImageWriter, TheEndingChoosesTheFormat) {
  const struct {
    const char* name;
    std::string start;
  } cases[] = {
      {"a.jpg", "\xFF\xD8\xFF"}, {"a.jpeg", "\xFF\xD8\xFF"},
      {"a.JPG", "\xFF\xD8\xFF"}, {"a.png", "\x89PNG"},
      {"a.tif", "II*"},          {"a.tiff", "II*"},
      {"a.bmp", "BM"},           {"a.webp", "RIFF"},
      {"a.jpg.png", "\x89PNG"},  {"two words.Png", "\x89PNG"},
      {".png", "\x89PNG"},
  };
  for (const auto& c : cases) {
    ASSERT_TRUE(WriteImageFile(dir_.File(c.name), SmallNoise(CV_8UC3), {})) << c.name;
    const auto bytes = ReadBytes(dir_.File(c.name));
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()).substr(0, c.start.size()), c.start) << c.name;
  }
}

TEST_F(ImageWriter, LosslessFormatsKeepEverySample) {
  const struct {
    const char* name;
    int type;
  } cases[] = {{"a.png", CV_8UC3},  {"b.png", CV_16UC3}, {"c.png", CV_8UC4}, {"d.png", CV_16UC4},
               {"a.tif", CV_16UC3}, {"b.tif", CV_8UC3},  {"a.bmp", CV_8UC3}, {"a.tiff", CV_16UC3}};
  for (const auto& c : cases) {
    const cv::Mat image = SmallNoise(c.type);
    ASSERT_TRUE(WriteImageFile(dir_.File(c.name), image, {})) << c.name;
    EXPECT_TRUE(SameBytes(cv::imread(dir_.File(c.name), cv::IMREAD_UNCHANGED), image)) << c.name;
  }
}

TEST_F(ImageWriter, WritesExactlyTheEncodedBytes) {
  const std::vector<int> params = {cv::IMWRITE_JPEG_QUALITY, 40};
  std::vector<uint8_t> encoded;
  cv::imencode(".jpg", SmallNoise(CV_8UC3), encoded, params);
  ASSERT_TRUE(WriteImageFile(dir_.File("a.jpg"), SmallNoise(CV_8UC3), params));
  EXPECT_EQ(ReadBytes(dir_.File("a.jpg")), encoded);
}

TEST_F(ImageWriter, ParametersReachTheEncoder) {
  ASSERT_TRUE(WriteImageFile(dir_.File("low.jpg"), SmallNoise(CV_8UC3), {cv::IMWRITE_JPEG_QUALITY, 1}));
  ASSERT_TRUE(WriteImageFile(dir_.File("high.jpg"), SmallNoise(CV_8UC3), {cv::IMWRITE_JPEG_QUALITY, 100}));
  EXPECT_LT(2 * fs::file_size(dir_.File("low.jpg")), fs::file_size(dir_.File("high.jpg")));
}

TEST_F(ImageWriter, AnotherFormatsParametersAreIgnored) {
  ASSERT_TRUE(WriteImageFile(dir_.File("a.png"), SmallNoise(CV_8UC3), {cv::IMWRITE_JPEG_QUALITY, 1}));
  EXPECT_TRUE(SameBytes(cv::imread(dir_.File("a.png"), cv::IMREAD_UNCHANGED), SmallNoise(CV_8UC3)));
}

TEST_F(ImageWriter, NamesAreUtf8) {
  const std::string path = dir_.File("\xC3\xA9t\xC3\xA9 \xE5\x86\x99\xE7\x9C\x9F.png");
  ASSERT_TRUE(WriteImageFile(path, SmallNoise(CV_8UC3), {}));
  EXPECT_TRUE(SameBytes(cv::imread(path, cv::IMREAD_UNCHANGED), SmallNoise(CV_8UC3)));
  EXPECT_EQ(Files(), 1U);
}

TEST_F(ImageWriter, ALargerFileIsReplaced) {
  std::vector<uint8_t> encoded;
  cv::imencode(".png", SmallNoise(CV_8UC3), encoded);
  WriteBytes(dir_.File("a.png"), std::vector<uint8_t>(100000, 1));
  ASSERT_TRUE(WriteImageFile(dir_.File("a.png"), SmallNoise(CV_8UC3), {}));
  EXPECT_EQ(ReadBytes(dir_.File("a.png")), encoded);
}

TEST_F(ImageWriter, FailsWhereNoFileCanBe) {
  fs::create_directory(dir_.File("folder.png"));
  EXPECT_FALSE(WriteImageFile(dir_.File("missing/a.png"), SmallNoise(CV_8UC3), {}));
  EXPECT_FALSE(WriteImageFile(dir_.File("folder.png"), SmallNoise(CV_8UC3), {}));
  EXPECT_EQ(Files(), 1U);
}

TEST_F(ImageWriter, FailsOnAFullDevice) {
  if (!fs::is_character_file("/dev/full")) GTEST_SKIP() << "there is no device that is always full";
  fs::create_symlink("/dev/full", dir_.File("a.png"));
  EXPECT_FALSE(WriteImageFile(dir_.File("a.png"), SmallNoise(CV_8UC3), {}));
}

TEST_F(ImageWriter, AShortWriteFailsAndLeavesWhatItWrote) {
  std::vector<uint8_t> encoded;
  cv::imencode(".bmp", SmallNoise(CV_8UC3), encoded);
  {
    const FileSizeLimit limit(1000);
    EXPECT_FALSE(WriteImageFile(dir_.File("a.bmp"), SmallNoise(CV_8UC3), {}));
  }
  encoded.resize(1000);
  EXPECT_EQ(ReadBytes(dir_.File("a.bmp")), encoded);
}

TEST_F(ImageWriter, AProtectedFileKeepsItsBytes) {
  fs::permissions(dir_.path(), fs::perms::all);
  const std::string path = WriteBytes(dir_.File("a.png"), {1, 2, 3});
  fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  {
    const OrdinaryUser user;
    EXPECT_FALSE(WriteImageFile(path, SmallNoise(CV_8UC3), {}));
  }
  EXPECT_EQ(ReadBytes(path), (std::vector<uint8_t>{1, 2, 3}));
}

TEST_F(ImageWriter, APathWithoutADotThrows) {
  const fs::path start = fs::current_path();
  fs::current_path(dir_.path());
  for (const char* path : {"a", "", "png", "folder/png"}) {
    try {
      WriteImageFile(path, SmallNoise(CV_8UC3), {});
      ADD_FAILURE() << path;
    } catch (const std::out_of_range& error) {
      EXPECT_STREQ(error.what(), "invalid string position");
    }
  }
  fs::current_path(start);
  EXPECT_EQ(Files(), 0U);
}

TEST_F(ImageWriter, ADotInAFoldersNameCounts) {
  fs::create_directory(dir_.File("out.dir"));
  EXPECT_THROW(WriteImageFile(dir_.File("out.dir/a"), SmallNoise(CV_8UC3), {}), cv::Exception);
  EXPECT_TRUE(fs::is_empty(dir_.File("out.dir")));
}

TEST_F(ImageWriter, AnUnknownEndingThrowsAndTouchesNothing) {
  WriteBytes(dir_.File("old.xyz"), {1, 2, 3});
  for (const char* name : {"a.xyz", "a.", "a.arw", "old.xyz"}) {
    EXPECT_THROW(WriteImageFile(dir_.File(name), SmallNoise(CV_8UC3), {}), cv::Exception) << name;
  }
  EXPECT_EQ(Files(), 1U);
  EXPECT_EQ(ReadBytes(dir_.File("old.xyz")), (std::vector<uint8_t>{1, 2, 3}));
}

TEST_F(ImageWriter, WhatTheEncoderRefusesTouchesNothing) {
  WriteBytes(dir_.File("old.jpg"), {1, 2, 3});
  const cv::Mat too_wide(1, 70000, CV_8UC3, cv::Scalar::all(0));  // JPEG is limited to 65500
  for (const char* name : {"new.jpg", "old.jpg"}) {
    try {
      EXPECT_FALSE(WriteImageFile(dir_.File(name), too_wide, {})) << name;
    } catch (const cv::Exception&) {
      // some versions of the encoder throw
    }
  }
  EXPECT_THROW(WriteImageFile(dir_.File("new.jpg"), cv::Mat(), {}), cv::Exception);
  EXPECT_EQ(Files(), 1U);
  EXPECT_EQ(ReadBytes(dir_.File("old.jpg")), (std::vector<uint8_t>{1, 2, 3}));
}

}  // namespace
}  // namespace lumvik::test
