// The library, the lifetime of a context, its last error and the size it reports.
#include <array>

#include "api_test.h"

namespace lumvik::test {
namespace {

class LibraryTest : public ApiTest {
 protected:
  std::string Missing(const std::string& name) const { return Path("missing-" + name); }

  int Load(const std::string& path) const { return lumvik_load_arw(ctx(), path.c_str(), 1); }

  void ExpectSize(int width, int height) const {
    EXPECT_EQ(lumvik_get_width(ctx()), width);
    EXPECT_EQ(lumvik_get_height(ctx()), height);
  }
};

TEST_F(LibraryTest, VersionIsAConstantString) {
  EXPECT_STREQ(lumvik_version(), "1.0.0");
  EXPECT_EQ(lumvik_version(), lumvik_version());
}

TEST_F(LibraryTest, InitAndShutdownDoNothing) {
  LoadNeutral();
  const std::string before = Describe(*ctx());
  EXPECT_EQ(lumvik_init(), LUMVIK_OK);
  lumvik_shutdown();
  lumvik_shutdown();
  EXPECT_EQ(Describe(*ctx()), before);
  EXPECT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_EQ(lumvik_init(), LUMVIK_OK);
}

TEST_F(LibraryTest, ANewContextIsEmpty) {
  ASSERT_NE(ctx(), nullptr);
  EXPECT_STREQ(lumvik_last_error(ctx()), "");
  ExpectSize(0, 0);
  EXPECT_FALSE(ctx()->render_valid);
  EXPECT_FALSE(ctx()->mask_valid);
  EXPECT_TRUE(ctx()->mask.empty());
  EXPECT_TRUE(ctx()->source_path.empty());
  EXPECT_EQ(ctx()->bg_blur, 0);
  EXPECT_EQ(ctx()->decoded.cam_mul, (std::array<float, 4>{1, 1, 1, 1}));
  EXPECT_EQ(Describe(ctx()->adjustments), Describe(Adjustments()));
}

TEST_F(LibraryTest, ANullContextHasAnErrorText) {
  EXPECT_STREQ(lumvik_last_error(nullptr), "null context");
  EXPECT_EQ(lumvik_last_error(nullptr), lumvik_last_error(nullptr));
}

TEST_F(LibraryTest, ContextsCanBeDestroyedInAnyState) {
  lumvik_destroy_context(nullptr);
  lumvik_destroy_context(lumvik_create_context());
  ASSERT_EQ(Load(WriteRaw("a.arw")), LUMVIK_OK);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  const float points[] = {0, 0, 1, 1};
  for (int channel = 0; channel < kToneCurveCount; ++channel)
    lumvik_set_tone_curve(ctx(), channel, points, 2);
  ASSERT_EQ(Load(Missing("a.png")), kFailed);
  ctx()->mask = cv::Mat(4, 4, CV_8U, cv::Scalar(0));
  lumvik_destroy_context(Release());  // the leak checker reports what is left
  EXPECT_EQ(ctx(), nullptr);
}

TEST_F(LibraryTest, ContextsAreIndependent) {
  const ContextPtr other = CreateContext();
  LoadNeutral();
  lumvik_set_exposure(ctx(), 1);
  EXPECT_EQ(lumvik_process(other.get()), kFailed);
  EXPECT_STREQ(lumvik_last_error(other.get()), kNoImage);
  EXPECT_EQ(LastError(), "");
  EXPECT_EQ(lumvik_get_width(other.get()), 0);
  EXPECT_EQ(other->adjustments.exposure, 0);
}

TEST_F(LibraryTest, EveryFailureReplacesTheWholeText) {
  EXPECT_EQ(lumvik_process(ctx()), kFailed);
  EXPECT_EQ(LastError(), "no image loaded");
  ExifInfo info;
  EXPECT_EQ(lumvik_get_exif(ctx(), &info), kFailed);
  EXPECT_EQ(LastError(), "no file loaded");
  EXPECT_EQ(Load(Missing("a much longer name.png")), kFailed);
  EXPECT_EQ(LastError(), "OpenCV could not read: " + Missing("a much longer name.png"));
  EXPECT_EQ(lumvik_export_png(ctx(), Path("a.png").c_str(), 8), kFailed);
  EXPECT_EQ(LastError(), "no image loaded");
}

TEST_F(LibraryTest, SuccessKeepsTheTextOfTheLastFailure) {
  EXPECT_EQ(Load(Missing("a.png")), kFailed);
  const std::string text = kUnreadable + Missing("a.png");
  EXPECT_EQ(LastError(), text);
  LoadNeutral();
  EXPECT_EQ(LastError(), text);
  EXPECT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_EQ(lumvik_export_tiff(ctx(), Path("a.tif").c_str()), LUMVIK_OK);
  ExifInfo info;
  EXPECT_EQ(lumvik_get_exif(ctx(), &info), LUMVIK_OK);
  ASSERT_EQ(Load(WriteRaw("a.arw")), LUMVIK_OK);
  lumvik_reset_adjustments(ctx());
  lumvik_unload(ctx());
  EXPECT_EQ(LastError(), text);
}

TEST_F(LibraryTest, TheTextPointerStaysValidUntilTheNextFailure) {
  EXPECT_EQ(Load(Missing("a name too long for the small string optimization.png")), kFailed);
  const char* text = lumvik_last_error(ctx());
  const std::string copy = text;
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_EQ(lumvik_load_arw(ctx(), nullptr, 1), kFailed);
  EXPECT_THROW(lumvik_export_png(ctx(), Path("a.unknown").c_str(), 8), cv::Exception);
  lumvik_unload(ctx());
  EXPECT_EQ(lumvik_process(CreateContext().get()), kFailed);
  EXPECT_EQ(text, copy);
  EXPECT_EQ(lumvik_last_error(ctx()), text);
}

TEST_F(LibraryTest, TheTextMayBePassedAsThePathOfTheNextLoad) {
  EXPECT_EQ(Load(Missing("a.png")), kFailed);
  EXPECT_EQ(lumvik_load_arw(ctx(), lumvik_last_error(ctx()), 1), kFailed);
  EXPECT_EQ(LastError(), std::string(kUnreadable) + kUnreadable + Missing("a.png"));
}

TEST_F(LibraryTest, SizeIsThatOfTheLoadedImage) {
  ASSERT_EQ(Load(WritePicture("a.png")), LUMVIK_OK);
  ExpectSize(48, 32);
  ASSERT_EQ(Load(WriteRaw("a.arw")), LUMVIK_OK);
  ExpectSize(48, 32);
  ASSERT_EQ(lumvik_load_arw(ctx(), Path("a.arw").c_str(), 2), LUMVIK_OK);
  ExpectSize(24, 16);
  ASSERT_EQ(Load(WritePicture("b.png", SmallPicture()(cv::Rect(0, 0, 7, 5)))), LUMVIK_OK);
  ExpectSize(7, 5);
  EXPECT_EQ(Load(Missing("a.png")), kFailed);
  EXPECT_EQ(Load(Missing("a.arw")), kFailed);
  ExpectSize(7, 5);
  lumvik_unload(ctx());
  ExpectSize(0, 0);
}

// Normally a crop changes the size of the render; here a render of another size is assigned directly.
TEST_F(LibraryTest, SizeIsThatOfTheRenderWhileItIsCurrent) {
  for (const std::string& path : {WritePicture("a.png"), WriteRaw("a.arw")}) {
    const auto render_small = [this, &path] {
      ASSERT_EQ(Load(path), LUMVIK_OK);
      ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
      ctx()->rendered = cv::Mat(13, 11, CV_16UC4, cv::Scalar::all(0));
    };
    render_small();
    ExpectSize(11, 13);
    lumvik_set_exposure(ctx(), 1);
    ExpectSize(11, 13);
    lumvik_reset_adjustments(ctx());
    ExpectSize(48, 32);
    render_small();
    EXPECT_EQ(Load(Missing("a.png")), kFailed);
    ExpectSize(48, 32);
    render_small();
    EXPECT_EQ(Load(Missing("a.arw")), kFailed);
    ExpectSize(48, 32);
    render_small();
    ctx()->rendered.release();
    ExpectSize(48, 32);
    render_small();
    lumvik_unload(ctx());
    ExpectSize(0, 0);
  }
}

TEST_F(LibraryTest, SizeWithoutARenderIsThatOfTheDecodedRawImage) {
  ASSERT_EQ(Load(WriteRaw("a.arw")), LUMVIK_OK);
  ctx()->source = cv::Mat(1, 2, CV_16UC4, cv::Scalar::all(0));
  ExpectSize(48, 32);
  ctx()->decoded.image.release();
  ExpectSize(2, 1);
}

TEST_F(LibraryTest, AnExportDoesNotChangeTheSize) {
  ASSERT_EQ(Load(WritePicture("a.png")), LUMVIK_OK);
  ctx()->rendered = cv::Mat(13, 11, CV_16UC4, cv::Scalar::all(0));
  ASSERT_EQ(lumvik_export_png(ctx(), Path("out.png").c_str(), 8), LUMVIK_OK);
  ExpectSize(48, 32);
  EXPECT_FALSE(ctx()->render_valid);
}

TEST_F(LibraryTest, FunctionsThatNeedAnImageFailInEveryStateWithoutOne) {
  const auto expect_empty = [this](const char* state) {
    SCOPED_TRACE(state);
    using Call = int (*)(EngineContext*, const std::string&);
    const Call needing_an_image[] = {
        [](EngineContext* c, const std::string&) { return lumvik_process(c); },
        [](EngineContext* c, const std::string& path) {
          return lumvik_export_jpeg(c, path.c_str(), 90, 0, 1);
        },
        [](EngineContext* c, const std::string& path) { return lumvik_export_png(c, path.c_str(), 16); },
        [](EngineContext* c, const std::string& path) { return lumvik_export_tiff(c, path.c_str()); },
    };
    for (const Call call : needing_an_image) {
      ctx()->last_error = "another";
      EXPECT_EQ(call(ctx(), Path("out.png")), kFailed);
      EXPECT_EQ(LastError(), "no image loaded");
      // The check for an image comes before that of the path.
      EXPECT_EQ(call(ctx(), "no extension"), kFailed);
    }
    ExifInfo info;
    EXPECT_EQ(lumvik_get_exif(ctx(), &info), kFailed);
    EXPECT_EQ(LastError(), "no file loaded");
    EXPECT_FALSE(std::filesystem::exists(Path("out.png")));
    ExpectSize(0, 0);
  };
  expect_empty("new");
  EXPECT_EQ(Load(Missing("a.png")), kFailed);
  expect_empty("after a failed load of an ordinary image");
  EXPECT_EQ(Load(Missing("a.arw")), kFailed);
  expect_empty("after a failed load of a RAW file");
  ASSERT_EQ(Load(WritePicture("a.png")), LUMVIK_OK);
  lumvik_unload(ctx());
  expect_empty("unloaded");
  ASSERT_EQ(Load(WriteRaw("a.arw")), LUMVIK_OK);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  lumvik_unload(ctx());
  expect_empty("unloaded after a render");
  lumvik_unload(ctx());
  expect_empty("unloaded twice");
}

}  // namespace
}  // namespace lumvik::test
