#include "image/embedded_preview.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/broken_raw.h"
#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

const cv::Mat kPlainPicture(32, 48, CV_8UC3, cv::Scalar(90, 150, 210));

class EmbeddedPreviewTest : public ::testing::Test {
 protected:
  std::string Write(const std::vector<uint8_t>& bytes) const { return WriteBytes(dir_.File("a.dng"), bytes); }

  void ExpectFailure(const std::string& path, PreviewStatus status) const {
    SCOPED_TRACE(path);
    const EmbeddedPreview preview = ReadEmbeddedPreview(path);
    EXPECT_EQ(preview.status, status);
    EXPECT_EQ(preview.image, nullptr);
  }

  const TempDir dir_;
};

TEST_F(EmbeddedPreviewTest, WhatCannotBeOpened) {
  const Deadline deadline;
  std::filesystem::create_directory(dir_.File("folder"));
  for (const std::string& path : {dir_.File("missing"), dir_.File("folder"), MakePipe(dir_.File("pipe")),
                                  Write(MakeUnsupportedFile()), Write({}), std::string()}) {
    ExpectFailure(path, PreviewStatus::kUnreadable);
  }
}

TEST_F(EmbeddedPreviewTest, FilesWithoutAPreview) {
  RawOptions options;
  options.preview = RawPreview::kNone;
  ExpectFailure(Write(MakeRawFile(kPlainPicture, options)), PreviewStatus::kNone);
  ExpectFailure(LUMVIK_TEST_DATA "/no_thumb.dng", PreviewStatus::kNone);
}

TEST_F(EmbeddedPreviewTest, APreviewThatIsNotDelivered) {
  ExpectFailure(Write(MakeDamagedPreviewRaw()), PreviewStatus::kNotDelivered);
  EXPECT_EQ(ReadEmbeddedPreview(dir_.File("a.dng")).delivery_error, LIBRAW_UNSUPPORTED_THUMBNAIL);
}

TEST_F(EmbeddedPreviewTest, JpegsAndBitmapsSayWhatTheyAre) {
  const struct {
    const char* file;
    int type;
  } cases[] = {{LUMVIK_TEST_DATA "/jpeg_thumb.dng", LIBRAW_IMAGE_JPEG},
               {LUMVIK_TEST_DATA "/bitmap_thumb.dng", LIBRAW_IMAGE_BITMAP},
               {LUMVIK_TEST_DATA "/uncompressed.ARW", LIBRAW_IMAGE_JPEG},
               {LUMVIK_SAMPLES "/sample_small.ARW", LIBRAW_IMAGE_JPEG}};
  for (const auto& c : cases) {
    const EmbeddedPreview preview = ReadEmbeddedPreview(c.file);
    ASSERT_EQ(preview.status, PreviewStatus::kRead) << c.file;
    EXPECT_EQ(preview.delivery_error, 0) << c.file;
    EXPECT_EQ(preview.image->type, c.type) << c.file;
  }
}

TEST_F(EmbeddedPreviewTest, ABitmapIsSharedInRedGreenBlue) {
  RawOptions options;
  options.format = RawFormat::kDng;
  options.preview = RawPreview::kBitmap;
  options.preview_picture.create(7, 13, CV_8UC3);
  cv::RNG(5).fill(options.preview_picture, cv::RNG::UNIFORM, 0, 256);
  const EmbeddedPreview preview = ReadEmbeddedPreview(Write(MakeRawFile(kPlainPicture, options)));
  ASSERT_EQ(preview.status, PreviewStatus::kRead);
  const cv::Mat bitmap = PreviewBitmap(*preview.image);
  EXPECT_TRUE(SameBytes(bitmap, options.preview_picture));
  EXPECT_EQ(bitmap.data, preview.image->data);
}

TEST_F(EmbeddedPreviewTest, ABitmapOfTooFewBytesIsEmpty) {
  libraw_processed_image_t image = {};
  image.width = 65535;
  image.height = 65535;
  image.data_size = 0xFFFFFFFF;  // above the product of the sides in 32 bits
  EXPECT_TRUE(PreviewBitmap(image).empty());
  image.width = 10;
  image.height = 10;
  image.data_size = 299;
  EXPECT_TRUE(PreviewBitmap(image).empty());
  image.data_size = 300;
  EXPECT_EQ(PreviewBitmap(image).size(), cv::Size(10, 10));
  image.width = 0;
  EXPECT_TRUE(PreviewBitmap(image).empty());
}

}  // namespace
}  // namespace lumvik::test
