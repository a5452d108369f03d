#include "analysis/perceptual_hash.h"

#include <gtest/gtest.h>

#include <bitset>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "reference/perceptual_hash.h"
#include "support/broken_raw.h"
#include "support/file_bytes.h"
#include "support/raw_previews.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint64_t kUntouched = 0x5A5A5A5A5A5A5A5A;
const std::string kData = LUMVIK_TEST_DATA "/";

size_t BitsOf(uint64_t hash) {
  return std::bitset<64>(hash).count();
}

cv::Mat Noise(cv::Size size, uint64_t seed) {
  cv::Mat noise(size, CV_8UC1);
  cv::RNG(seed).fill(noise, cv::RNG::UNIFORM, 0, 256);
  return noise;
}

// Expects success.
uint64_t HashOf(const std::string& path) {
  uint64_t hash = 0;
  EXPECT_EQ(PerceptualHashOfFile(path, hash), HashStatus::kHashed) << path;
  return hash;
}

cv::Mat Reduced(cv::Mat gray) {
  const int long_side = std::max(gray.cols, gray.rows);
  if (long_side <= 256) return gray;
  const double scale = static_cast<double>(256.0F / static_cast<float>(long_side));
  cv::Mat reduced;
  cv::resize(gray, reduced, cv::Size(), scale, scale, cv::INTER_AREA);
  return reduced;
}

class PerceptualHashOfFileTest : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const cv::Mat& image) const {
    EXPECT_TRUE(cv::imwrite(dir_.File(name), image));
    return dir_.File(name);
  }
  std::string WriteRaw(const Bytes& bytes) const { return WriteBytes(dir_.File("a.dng"), bytes); }

  void ExpectFailure(const std::string& path, HashStatus status) const {
    uint64_t hash = kUntouched;
    EXPECT_EQ(PerceptualHashOfFile(path, hash), status) << path;
    EXPECT_EQ(hash, kUntouched) << path;
  }

  const TempDir dir_;
};

TEST(PerceptualHash, EqualsTheReference) {
  std::vector<cv::Size> sizes = OddSizes();
  sizes.insert(sizes.end(), {{20, 10}, {32, 32}, {33, 31}, {256, 171}, {1000, 2}});
  uint64_t seed = 0;
  for (const cv::Size& size : sizes) {
    const cv::Mat gray = Noise(size, ++seed);
    EXPECT_EQ(PerceptualHash(gray), reference::PerceptualHash(gray)) << size;
    EXPECT_EQ(PerceptualHash(gray / 16), reference::PerceptualHash(gray / 16)) << size;
  }
  for (const int level : {0, 1, 255}) {
    const cv::Mat flat(40, 30, CV_8UC1, cv::Scalar(level));
    EXPECT_EQ(PerceptualHash(flat), reference::PerceptualHash(flat)) << level;
  }
}

TEST(PerceptualHash, LeavesTheImageUnchanged) {
  const cv::Mat gray = Noise({32, 32}, 1);
  const cv::Mat before = gray.clone();
  PerceptualHash(gray);
  EXPECT_TRUE(SameBytes(gray, before));
}

// Of 63 distinct values 31 lie above the median.
TEST(PerceptualHash, DistinctFrequenciesSetHalfOfTheBits) {
  for (uint64_t seed = 0; seed < 100; ++seed) {
    const cv::Mat gray = Noise({61, 47}, seed);
    const uint64_t hash = PerceptualHash(gray);
    EXPECT_EQ(BitsOf(hash & ~(uint64_t{1} << 63)), 31U) << seed;
    EXPECT_EQ(hash >> 63, 1U) << seed;  // the mean brightness of 127 exceeds all other frequencies of noise
  }
}

// One bright pixel in a black image: its mean brightness may lie on either side of the median.
TEST(PerceptualHash, TheFirstBitComparesTheMeanWithTheMedian) {
  int below = 0;
  for (uint64_t seed = 0; seed < 20; ++seed) {
    cv::Mat gray(32, 32, CV_8UC1, cv::Scalar(0));
    const int x = static_cast<int>(seed % 4);
    gray.at<uchar>(x, static_cast<int>(seed / 4)) = 255;
    const cv::Mat frequencies = reference::LowFrequencies(gray);
    std::vector<float> others(frequencies.begin<float>() + 1, frequencies.end<float>());
    std::sort(others.begin(), others.end());
    const bool above = frequencies.at<float>(0, 0) > others[31];
    EXPECT_EQ(PerceptualHash(gray) >> 63, above ? 1U : 0U) << seed;
    below += above ? 0 : 1;
  }
  EXPECT_GT(below, 3);
  EXPECT_LT(below, 17);
}

TEST_F(PerceptualHashOfFileTest, ReadsOrdinaryImagesInGrayAndReducesThem) {
  for (const char* name : {"cat.jpg", "eiffel_gps_north_east.jpg", "tower_orientation8.jpg"}) {
    const cv::Mat gray = cv::imread(kData + name, cv::IMREAD_GRAYSCALE);
    EXPECT_EQ(HashOf(kData + name), reference::PerceptualHash(Reduced(gray))) << name;
  }
  for (const cv::Size size : {cv::Size(20, 10), cv::Size(256, 100), cv::Size(257, 100), cv::Size(301, 777)}) {
    const cv::Mat gray = Noise(size, 3);
    EXPECT_EQ(HashOf(Write("a.png", gray)), reference::PerceptualHash(Reduced(gray))) << size;
  }
}

TEST_F(PerceptualHashOfFileTest, HashesVeryLongImages) {
  EXPECT_NE(HashOf(Write("a.png", Noise({10000, 1}, 2))), 0U);
  EXPECT_NE(HashOf(Write("a.png", Noise({1, 10000}, 2))), 0U);
}

TEST_F(PerceptualHashOfFileTest, DecodesJpegPreviewsInGray) {
  for (const std::string& path : {kData + "jpeg_thumb.dng", kData + "uncompressed.ARW",
                                  std::string(LUMVIK_SAMPLES "/sample_small.ARW")}) {
    const cv::Mat gray = cv::imdecode(DeliveredPreview(ReadBytes(path)), cv::IMREAD_GRAYSCALE);
    EXPECT_EQ(HashOf(path), reference::PerceptualHash(gray)) << path;
  }
}

TEST_F(PerceptualHashOfFileTest, DoesNotReduceJpegPreviewsFirst) {
  RawOptions options;
  options.format = RawFormat::kDng;  // LibRaw ignores a gray JPEG in an ARW file
  const cv::Mat noise = Noise({1000, 700}, 8);
  cv::imencode(".jpg", noise, options.preview_jpeg);
  const cv::Mat gray = cv::imdecode(options.preview_jpeg, cv::IMREAD_GRAYSCALE);
  const uint64_t hash = HashOf(WriteRaw(MakeRawFile(cv::Mat(32, 48, CV_8UC3, cv::Scalar(9)), options)));
  EXPECT_EQ(hash, reference::PerceptualHash(gray));
  EXPECT_NE(hash, reference::PerceptualHash(Reduced(gray)));
}

TEST_F(PerceptualHashOfFileTest, ReadsBitmapPreviewsAsRgb) {
  cv::Mat rgb(20, 30, CV_8UC3);
  cv::RNG(6).fill(rgb, cv::RNG::UNIFORM, 0, 256);
  cv::Mat gray;
  cv::cvtColor(rgb, gray, cv::COLOR_RGB2GRAY);
  EXPECT_EQ(HashOf(WriteRaw(MakeBitmapPreviewRaw(rgb))), reference::PerceptualHash(gray));
  cv::cvtColor(rgb, gray, cv::COLOR_BGR2GRAY);
  EXPECT_NE(HashOf(dir_.File("a.dng")), reference::PerceptualHash(gray));
}

// LibRaw adds the orientation of the RAW file to a JPEG without one, but has no such place in a bitmap.
TEST_F(PerceptualHashOfFileTest, TurnsJpegPreviewsButNotBitmapPreviews) {
  RawOptions options;
  options.format = RawFormat::kDng;
  cv::Mat photograph;
  cv::resize(cv::imread(kData + "cat.jpg"), photograph, cv::Size(480, 320), 0, 0, cv::INTER_AREA);
  for (const RawPreview preview : {RawPreview::kJpeg, RawPreview::kBitmap}) {
    options.preview = preview;
    options.orientation = 1;
    const uint64_t unturned = HashOf(WriteRaw(MakeRawFile(photograph, options)));
    options.orientation = 6;
    const uint64_t turned = HashOf(WriteRaw(MakeRawFile(photograph, options)));
    EXPECT_EQ(unturned == turned, preview == RawPreview::kBitmap);
  }
}

TEST_F(PerceptualHashOfFileTest, ReportsTheStageThatFailed) {
  ExpectFailure(dir_.File("missing.png"), HashStatus::kUnreadable);
  ExpectFailure(dir_.File("missing.arw"), HashStatus::kUnreadable);
  ExpectFailure(WriteBytes(dir_.File("text.jpg"), {'t', 'e', 'x', 't'}), HashStatus::kUnreadable);
  ExpectFailure(WriteBytes(dir_.File("empty.jpg"), {}), HashStatus::kUnreadable);
  ExpectFailure(WriteBytes(dir_.File("photo.txt"), ReadBytes(kData + "eiffel_gps_north_east.jpg")),
                HashStatus::kUnreadable);
  ExpectFailure(kData + "no_thumb.dng", HashStatus::kNoPreview);
  ExpectFailure(WriteRaw(MakeDamagedPreviewRaw()), HashStatus::kPreviewNotDelivered);
  ExpectFailure(WriteRaw(MakeUndecodablePreviewRaw()), HashStatus::kPreviewUndecodable);
  ExpectFailure(WriteRaw(MakeOversizedPreviewRaw(65000)), HashStatus::kPreviewUndecodable);
  ExpectFailure(WriteRaw(MakeShortBitmapPreviewRaw(cv::Mat(30, 40, CV_8UC3, cv::Scalar(9)))),
                HashStatus::kPreviewUndecodable);
}

}  // namespace
}  // namespace lumvik::test
