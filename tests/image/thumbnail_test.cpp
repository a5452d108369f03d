#include "image/thumbnail.h"

#include <gtest/gtest.h>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "support/broken_raw.h"
#include "support/file_bytes.h"
#include "support/raw_previews.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

using Bytes = std::vector<uint8_t>;

cv::Mat Noise(cv::Size size) {
  cv::Mat noise(size, CV_8UC3);
  cv::RNG(4).fill(noise, cv::RNG::UNIFORM, 0, 256);
  return noise;
}

Bytes Jpeg(const cv::Mat& bgr, int quality) {
  Bytes jpeg;
  cv::imencode(".jpg", bgr, jpeg, {cv::IMWRITE_JPEG_QUALITY, quality});
  return jpeg;
}

// Expects success.
Bytes ThumbnailOf(const std::string& path) {
  Thumbnail thumbnail;
  EXPECT_EQ(MakeThumbnail(path, thumbnail), ThumbnailStatus::kMade) << path;
  return {thumbnail.data.get(), thumbnail.data.get() + thumbnail.size};
}

cv::Size SizeOf(const Bytes& jpeg) {
  return cv::imdecode(jpeg, cv::IMREAD_COLOR).size();
}

class ThumbnailTest : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const cv::Mat& bgr) const {
    EXPECT_TRUE(cv::imwrite(dir_.File(name), bgr));
    return dir_.File(name);
  }
  std::string WriteRaw(const Bytes& bytes) const { return WriteBytes(dir_.File("a.dng"), bytes); }

  void ExpectFailure(const std::string& path, ThumbnailStatus status) const {
    Thumbnail thumbnail;
    EXPECT_EQ(MakeThumbnail(path, thumbnail), status) << path;
    EXPECT_EQ(thumbnail.data, nullptr) << path;
    EXPECT_EQ(thumbnail.size, 0U) << path;
  }

  const TempDir dir_;
};

TEST_F(ThumbnailTest, OrdinaryImagesAreReducedTo160) {
  const struct {
    cv::Size image;
    cv::Size thumbnail;
  } cases[] = {{{4000, 3000}, {160, 120}}, {{300, 400}, {120, 160}}, {{161, 161}, {160, 160}},
               {{161, 9}, {160, 9}},       {{10000, 1}, {160, 1}},   {{1, 10000}, {1, 160}}};
  for (const auto& c : cases) {
    const cv::Mat image = Noise(c.image);
    const float factor = 160.0F / static_cast<float>(std::max(c.image.width, c.image.height));
    const auto scale = static_cast<double>(factor);
    cv::Mat reduced;
    if (std::min(c.image.width, c.image.height) == 1) {
      cv::resize(image, reduced, c.thumbnail, scale, scale, cv::INTER_AREA);
    } else {
      cv::resize(image, reduced, cv::Size(), scale, scale, cv::INTER_AREA);
    }
    ASSERT_EQ(reduced.size(), c.thumbnail);
    EXPECT_TRUE(ThumbnailOf(Write("a.png", image)) == Jpeg(reduced, 75)) << c.image;
  }
}

TEST_F(ThumbnailTest, SmallOrdinaryImagesKeepTheirSize) {
  for (const cv::Size size : {cv::Size(100, 80), cv::Size(160, 160), cv::Size(1, 1)}) {
    const cv::Mat image = Noise(size);
    EXPECT_TRUE(ThumbnailOf(Write("a.png", image)) == Jpeg(image, 75)) << size;
  }
}

TEST_F(ThumbnailTest, DeepAndGrayImagesBecomeColorOfEightBits) {
  cv::Mat deep;
  Noise({50, 40}).convertTo(deep, CV_16U, 257);
  EXPECT_TRUE(ThumbnailOf(Write("a.png", deep)) == Jpeg(Noise({50, 40}), 75));
  const cv::Mat gray(40, 50, CV_8UC1, cv::Scalar(99));
  EXPECT_TRUE(ThumbnailOf(Write("a.png", gray)) == Jpeg(cv::Mat(40, 50, CV_8UC3, {99, 99, 99}), 75));
}

TEST_F(ThumbnailTest, OrdinaryImagesStandUpright) {
  EXPECT_EQ(SizeOf(ThumbnailOf(LUMVIK_TEST_DATA "/tower_orientation8.jpg")), cv::Size(160, 120));
}

TEST_F(ThumbnailTest, AJpegPreviewComesAsLibRawDeliversIt) {
  for (const std::string path : {LUMVIK_TEST_DATA "/jpeg_thumb.dng", LUMVIK_TEST_DATA "/uncompressed.ARW",
                                 LUMVIK_TEST_DATA "/truncated.ARW", LUMVIK_SAMPLES "/sample_small.ARW"}) {
    const Bytes delivered = DeliveredPreview(ReadBytes(path));
    ASSERT_FALSE(delivered.empty()) << path;
    EXPECT_TRUE(SameDelivery(ThumbnailOf(path), delivered)) << path;
  }
}

TEST_F(ThumbnailTest, AJpegPreviewKeepsItsSize) {
  RawOptions options;
  options.preview_jpeg = Jpeg(Noise({1000, 700}), 90);
  EXPECT_EQ(SizeOf(ThumbnailOf(WriteRaw(MakeRawFile(Noise({48, 32}), options)))), cv::Size(1000, 700));
}

TEST_F(ThumbnailTest, AJpegPreviewNeedNotBeDecodable) {
  const Bytes file = MakeUndecodablePreviewRaw();
  EXPECT_TRUE(SameDelivery(ThumbnailOf(WriteRaw(file)), DeliveredPreview(file)));
}

// The encoder takes the red channel for blue.
TEST_F(ThumbnailTest, ABitmapPreviewIsEncodedWithRedAndBlueSwapped) {
  for (const cv::Size size : {cv::Size(31, 17), cv::Size(300, 200)}) {
    const cv::Mat rgb = Noise(size);
    EXPECT_TRUE(ThumbnailOf(WriteRaw(MakeBitmapPreviewRaw(rgb))) == Jpeg(rgb, 80)) << size;
  }
  const std::string path = LUMVIK_TEST_DATA "/bitmap_thumb.dng";
  const EmbeddedPreview preview = ReadEmbeddedPreview(path);
  EXPECT_TRUE(ThumbnailOf(path) == Jpeg(PreviewBitmap(*preview.image), 80));
}

TEST_F(ThumbnailTest, BitmapsThatCannotBeEncodedAreNotDelivered) {
  const cv::Mat widest(1, 65500, CV_8UC3, cv::Scalar(10, 20, 30));
  EXPECT_EQ(SizeOf(ThumbnailOf(WriteRaw(MakeBitmapPreviewRaw(widest)))), widest.size());
  const cv::Mat too_wide(1, 65501, CV_8UC3, cv::Scalar(10, 20, 30));
  ExpectFailure(WriteRaw(MakeBitmapPreviewRaw(too_wide)), ThumbnailStatus::kPreviewNotDelivered);
  ExpectFailure(WriteRaw(MakeShortBitmapPreviewRaw(Noise({40, 30}))), ThumbnailStatus::kPreviewNotDelivered);
}

TEST_F(ThumbnailTest, EveryStepHasItsFailure) {
  ExpectFailure(dir_.File("missing.png"), ThumbnailStatus::kUnreadable);
  ExpectFailure(dir_.File("missing.arw"), ThumbnailStatus::kUnreadable);
  ExpectFailure(WriteBytes(dir_.File("photo.txt"), Jpeg(Noise({40, 30}), 90)), ThumbnailStatus::kUnreadable);
  ExpectFailure(WriteBytes(dir_.File("text.jpg"), {'t', 'e', 'x', 't'}), ThumbnailStatus::kUnreadable);
  ExpectFailure(WriteBytes(dir_.File("empty.jpg"), {}), ThumbnailStatus::kUnreadable);
  ExpectFailure(LUMVIK_TEST_DATA "/no_thumb.dng", ThumbnailStatus::kNoPreview);
  ExpectFailure(WriteRaw(MakeDamagedPreviewRaw()), ThumbnailStatus::kPreviewNotDelivered);
}

}  // namespace
}  // namespace lumvik::test
