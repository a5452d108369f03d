#include "support/broken_raw.h"

#include <gtest/gtest.h>
#include <libraw/libraw.h>

#include <memory>
#include <string>
#include <vector>

#include "support/opened_raw.h"

namespace lumvik::test {
namespace {

// Runs all of LibRaw's steps on a file.
class Development {
 public:
  explicit Development(std::vector<uint8_t> file, bool half_size = false) : file_(std::move(file)) {
    raw_->set_dataerror_handler([](void*, const char*, int) {}, nullptr);  // it would print
    raw_->imgdata.params.half_size = half_size ? 1 : 0;
    raw_->imgdata.params.use_camera_wb = 1;
    raw_->imgdata.params.output_bps = 16;
    const bool developed = Succeeds("open_file", raw_->open_buffer(file_.data(), file_.size())) &&
                           Succeeds("unpack", raw_->unpack()) &&
                           Succeeds("dcraw_process", raw_->dcraw_process());
    if (developed) image_.reset(raw_->dcraw_make_mem_image());
  }

  const std::string& Failure() const { return failure_; }
  const libraw_processed_image_t* Image() const { return image_.get(); }

 private:
  bool Succeeds(const std::string& step, int code) {
    if (code != LIBRAW_SUCCESS) failure_ = step + ": " + libraw_strerror(code);
    return code == LIBRAW_SUCCESS;
  }

  struct ClearImage {
    void operator()(libraw_processed_image_t* image) const { LibRaw::dcraw_clear_mem(image); }
  };

  std::vector<uint8_t> file_;
  std::unique_ptr<LibRaw> raw_ = std::make_unique<LibRaw>();
  std::unique_ptr<libraw_processed_image_t, ClearImage> image_;
  std::string failure_;
};

std::string FailureOf(std::vector<uint8_t> file) {
  return Development(std::move(file)).Failure();
}

TEST(BrokenRaw, WhatIsNoRawFileFailsInOpen) {
  EXPECT_EQ(FailureOf(MakeUnsupportedFile()), "open_file: Unsupported file format or not RAW file");
  EXPECT_EQ(FailureOf(std::vector<uint8_t>(63, 'Z')), "open_file: Input/output error");
}

TEST(BrokenRaw, MissingSamplesFailInUnpack) {
  EXPECT_EQ(FailureOf(MakeTruncatedRaw(RawFormat::kArwUncompressed)), "unpack: Input/output error");
  EXPECT_EQ(FailureOf(MakeTruncatedRaw(RawFormat::kDng)), "unpack: Input/output error");
}

TEST(BrokenRaw, CompressedArwIsDevelopedWithoutItsLastRows) {
  const Development development(MakeTruncatedRaw(RawFormat::kArwCompressed));
  EXPECT_EQ(development.Failure(), "");
  ASSERT_NE(development.Image(), nullptr);
  EXPECT_EQ(development.Image()->height, 40);
}

TEST(BrokenRaw, TooManyPixelsFailInUnpack) {
  EXPECT_EQ(FailureOf(MakeOversizedRaw()), "unpack: Image too big for processing");
}

TEST(BrokenRaw, ForeignCompressionFailsInUnpack) {
  EXPECT_EQ(FailureOf(MakeUndecodableRaw()), "unpack: Corrupted data or unexpected EOF");
}

TEST(BrokenRaw, SmallSixBySixPatternFailsInProcess) {
  EXPECT_EQ(FailureOf(MakeUndevelopableRaw()), "dcraw_process: Input/output error");
  const Development half(MakeUndevelopableRaw(), /*half_size=*/true);
  EXPECT_EQ(half.Failure(), "");
  ASSERT_NE(half.Image(), nullptr);
  EXPECT_EQ(half.Image()->colors, 3);
}

TEST(BrokenRaw, TwoColorsAreDelivered) {
  const Development development(MakeTwoColorRaw());
  EXPECT_EQ(development.Failure(), "");
  ASSERT_NE(development.Image(), nullptr);
  EXPECT_EQ(development.Image()->colors, 2);
  EXPECT_EQ(development.Image()->data_size, 40u * 64u * 2u * 2u);
}

TEST(BrokenRaw, DamagedPreviewIsUnpackedButNotDelivered) {
  OpenedRaw raw(MakeDamagedPreviewRaw());
  EXPECT_EQ(raw->unpack_thumb(), LIBRAW_SUCCESS);
  int code = LIBRAW_SUCCESS;
  EXPECT_EQ(raw->dcraw_make_mem_thumb(&code), nullptr);
  EXPECT_STREQ(libraw_strerror(code), "Unsupported thumbnail format");
}

TEST(BrokenRaw, DiagonalSensorIsLaidOutInASquare) {
  OpenedRaw raw(MakeDiagonalRaw(500));
  EXPECT_EQ(raw->imgdata.sizes.raw_width, 22);
  EXPECT_EQ(raw->imgdata.sizes.width, 511);
  EXPECT_EQ(raw->imgdata.sizes.height, 510);
}

}  // namespace
}  // namespace lumvik::test
