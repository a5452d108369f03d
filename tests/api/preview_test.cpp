// lumvik_get_preview: its buffer, its error texts and its effect on the render.
#include "reference/preview.h"

#include <limits>
#include <opencv2/imgproc.hpp>

#include "api_test.h"

namespace lumvik::test {
namespace {

constexpr char kTooSmall[] = "output buffer too small";
constexpr uint8_t kUntouchedByte = 0xA5;

class PreviewTest : public ApiTest {
 protected:
  static int Size(cv::Size size) { return 4 * size.area(); }

  // Gets the preview into a buffer of exactly its size.
  cv::Mat Preview() const {
    EXPECT_EQ(lumvik_process(ctx()), LUMVIK_OK);
    cv::Mat preview(lumvik_get_height(ctx()), lumvik_get_width(ctx()), CV_8UC4);
    EXPECT_EQ(lumvik_get_preview(ctx(), preview.data, Size(preview.size())), LUMVIK_OK) << LastError();
    return preview;
  }

  // Left half subject, right half background.
  void SetMask(cv::Size size = {48, 32}) const {
    ctx()->mask = cv::Mat(size, CV_8U, cv::Scalar(0));
    ctx()->mask.colRange(0, size.width / 2).setTo(255);
    ctx()->mask_valid = true;
  }
};

TEST_F(PreviewTest, NeutralSettingsReproduceThePicture) {
  LoadNeutral();
  cv::Mat expected;
  cv::cvtColor(SmallPicture(), expected, cv::COLOR_BGR2RGBA);
  EXPECT_TRUE(SameBytes(Preview(), expected));
}

TEST_F(PreviewTest, ANullContextOrBufferStoresNoText) {
  LoadNeutral();
  ctx()->last_error = "another";
  uint8_t byte = kUntouchedByte;
  EXPECT_EQ(lumvik_get_preview(nullptr, &byte, 1), kFailed);
  EXPECT_EQ(lumvik_get_preview(ctx(), nullptr, 1 << 20), kFailed);
  EXPECT_EQ(LastError(), "another");
  EXPECT_FALSE(ctx()->render_valid);
}

TEST_F(PreviewTest, FailsWithoutAnImage) {
  uint8_t byte = kUntouchedByte;
  EXPECT_EQ(lumvik_get_preview(ctx(), &byte, 1), kFailed);
  EXPECT_EQ(LastError(), kNoImage);
  EXPECT_FALSE(ctx()->render_valid);
}

TEST_F(PreviewTest, ABufferOneByteTooSmallIsNotWrittenButTheImageIsRendered) {
  LoadNeutral();
  lumvik_set_crop(ctx(), 0.25F, 0.5F, 0.5F, 0.5F);
  const int size = Size({24, 16});
  Bytes buffer(static_cast<size_t>(size), kUntouchedByte);
  for (const int capacity : {size - 1, 1, 0, -1, std::numeric_limits<int>::min()}) {
    lumvik_set_exposure(ctx(), 0);
    ctx()->last_error.clear();
    ctx()->render_valid = false;
    EXPECT_EQ(lumvik_get_preview(ctx(), buffer.data(), capacity), kFailed);
    EXPECT_EQ(LastError(), kTooSmall);
    EXPECT_EQ(buffer, Bytes(buffer.size(), kUntouchedByte));
    EXPECT_TRUE(ctx()->render_valid);
    EXPECT_EQ(lumvik_get_width(ctx()), 24);
    EXPECT_EQ(lumvik_get_height(ctx()), 16);
  }
  EXPECT_EQ(lumvik_get_preview(ctx(), buffer.data(), size), LUMVIK_OK);
}

TEST_F(PreviewTest, ALargePictureNeedsItsWholeBuffer) {
  const cv::Size size(3000, 2000);
  const std::string path = WritePicture("large.png", cv::Mat(size, CV_8UC3, cv::Scalar(10, 20, 30)));
  ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), LUMVIK_OK);
  Bytes buffer(24000000);
  EXPECT_EQ(lumvik_get_preview(ctx(), buffer.data(), 23999999), kFailed);
  EXPECT_EQ(LastError(), kTooSmall);
  EXPECT_EQ(lumvik_get_preview(ctx(), buffer.data(), 24000000), LUMVIK_OK);
  EXPECT_EQ(buffer.back(), 255);
}

TEST_F(PreviewTest, ALargerBufferIsNotWrittenBeyondThePreview) {
  LoadNeutral();
  const auto size = static_cast<size_t>(Size({48, 32}));
  Bytes buffer(size + 100, kUntouchedByte);
  ASSERT_EQ(lumvik_get_preview(ctx(), buffer.data(), static_cast<int>(buffer.size())), LUMVIK_OK);
  EXPECT_EQ(Bytes(buffer.begin() + static_cast<std::ptrdiff_t>(size), buffer.end()),
            Bytes(100, kUntouchedByte));
}

TEST_F(PreviewTest, RendersEveryTimeAndMakesTheRenderCurrent) {
  LoadNeutral();
  const cv::Mat before = Preview();
  lumvik_set_exposure(ctx(), 1);
  Bytes buffer(before.total() * 4);
  ASSERT_EQ(lumvik_get_preview(ctx(), buffer.data(), static_cast<int>(buffer.size())), LUMVIK_OK);
  EXPECT_NE(buffer, Bytes(before.datastart, before.dataend));
  EXPECT_TRUE(ctx()->render_valid);
  lumvik_set_exposure(ctx(), 0);
  EXPECT_FALSE(SameBytes(Exported(), Widened(SmallPicture()))) << "the export writes the preview's render";
}

TEST_F(PreviewTest, BlursTheBackgroundOnlyInThePreview) {
  LoadNeutral();
  const cv::Mat sharp = Preview();
  SetMask();
  lumvik_set_bg_blur(ctx(), 50);
  const cv::Mat preview = Preview();
  EXPECT_TRUE(SameBytes(preview, reference::RenderPreview(ctx()->rendered, ctx()->mask, 50)));
  EXPECT_FALSE(SameBytes(preview, sharp));
  EXPECT_TRUE(SameBytes(Exported(), Widened(SmallPicture()))) << "exports stay sharp";
}

TEST_F(PreviewTest, TheBlurNeedsAValidMask) {
  LoadNeutral();
  const cv::Mat sharp = Preview();
  lumvik_set_bg_blur(ctx(), 50);
  EXPECT_TRUE(SameBytes(Preview(), sharp)) << "no mask";
  SetMask();
  ctx()->mask_valid = false;
  EXPECT_TRUE(SameBytes(Preview(), sharp)) << "an invalid mask";
  ctx()->mask_valid = true;
  EXPECT_FALSE(SameBytes(Preview(), sharp));
  lumvik_set_bg_blur(ctx(), 0);
  EXPECT_TRUE(SameBytes(Preview(), sharp)) << "no strength";
}

TEST_F(PreviewTest, TheMaskIsResizedToACroppedRender) {
  LoadNeutral();
  SetMask();
  lumvik_set_crop(ctx(), 0.25F, 0.25F, 0.5F, 0.5F);
  lumvik_set_bg_blur(ctx(), 50);
  const cv::Mat preview = Preview();
  ASSERT_EQ(preview.size(), cv::Size(24, 16));
  EXPECT_TRUE(SameBytes(preview, reference::RenderPreview(ctx()->rendered, ctx()->mask, 50)));
}

TEST_F(PreviewTest, SettingsThatThrowLeaveTheRenderAndTheBufferUntouched) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  lumvik_set_sharpening_amount(ctx(), 50);
  lumvik_set_sharpening_radius(ctx(), 0);
  const std::string before = Describe(*ctx());
  Bytes buffer(static_cast<size_t>(Size({48, 32})), kUntouchedByte);
  EXPECT_THROW(lumvik_get_preview(ctx(), buffer.data(), static_cast<int>(buffer.size())), cv::Exception);
  EXPECT_EQ(Describe(*ctx()), before);
  EXPECT_EQ(buffer, Bytes(buffer.size(), kUntouchedByte));
}

}  // namespace
}  // namespace lumvik::test
