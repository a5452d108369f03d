// Loading, replacing and unloading a photograph.
#include <libraw/libraw.h>

#include <limits>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "api_test.h"

namespace lumvik::test {
namespace {

class LoadTest : public ApiTest {
 protected:
  int Load(const std::string& path, int quality = 1) const {
    return lumvik_load_arw(ctx(), path.c_str(), quality);
  }

  // The loaded image, as 16-bit BGR.
  cv::Mat Held() const {
    lumvik_set_temperature(ctx(), 6500);
    return Exported();
  }

  cv::Size Size() const { return {lumvik_get_width(ctx()), lumvik_get_height(ctx())}; }

  void SetMask() const {
    ctx()->mask = cv::Mat(3, 5, CV_8U, cv::Scalar(200));
    ctx()->mask_valid = true;
  }

  void ExpectMask() const {
    EXPECT_TRUE(ctx()->mask_valid);
    EXPECT_TRUE(SameBytes(ctx()->mask, cv::Mat(3, 5, CV_8U, cv::Scalar(200))));
  }
};

TEST_F(LoadTest, TheExtensionAloneSelectsTheDecoder) {
  const struct {
    const char* name;
    bool ordinary;
  } cases[] = {
      {"a.jpg", true},      {"a.jpeg", true},   {"a.png", true},         {"a.tif", true},
      {"a.tiff", true},     {"a.bmp", true},    {"a.webp", true},        {"a.JPG", true},
      {"IMG.JPEG", true},   {"a.TiFf", true},   {".png", true},          {"a.arw.jpg", true},
      {"IMG.ARW", false},   {"IMG.dng", false}, {"no extension", false}, {"photojpg", false},
      {"x.jpg.arw", false}, {"a.jpg ", false},  {"a.jpe", false},        {"a.gif", false},
      {"a.png/b", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Load(Path(c.name)), kFailed);
    EXPECT_EQ(LastError().rfind("OpenCV could not read: ", 0) == 0, c.ordinary) << c.name;
    EXPECT_EQ(LastError().rfind("LibRaw open_file failed: ", 0) == 0, !c.ordinary) << c.name;
  }
}

TEST_F(LoadTest, OrdinaryImagesAreDecodedAndWidened) {
  for (const char* name : {"a.png", "a.tif", "a.TIFF", "a.bmp", "a.jpg", "a.jpeg", "a.webp"}) {
    const std::string path = WritePicture(name);
    ASSERT_EQ(Load(path), LUMVIK_OK) << LastError();
    EXPECT_TRUE(SameBytes(Held(), Widened(cv::imread(path, cv::IMREAD_COLOR)))) << name;
  }
  ASSERT_EQ(Load(Path("a.png")), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(Held(), Widened(SmallPicture())));
}

TEST_F(LoadTest, QualityDoesNotAffectOrdinaryImages) {
  const std::string path = WritePicture("a.png");
  for (const int quality : {1, 4, -7, 100}) {
    ASSERT_EQ(Load(path, quality), LUMVIK_OK);
    EXPECT_EQ(Size(), cv::Size(48, 32));
  }
}

TEST_F(LoadTest, TheContentMayBeOfAnotherOrdinaryFormat) {
  WriteBytes(Path("png.jpg"), ReadBytes(WritePicture("a.png")));
  ASSERT_EQ(Load(Path("png.jpg")), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(Held(), Widened(SmallPicture())));
}

TEST_F(LoadTest, SixteenBitsAreReducedToEight) {
  cv::Mat deep(32, 48, CV_16UC3);
  cv::randu(deep, 0, 65536);
  ASSERT_EQ(Load(WritePicture("deep.png", deep)), LUMVIK_OK);
  const cv::Mat held = Held();
  for (const auto& pixel : cv::Mat_<cv::Vec3w>(held)) {
    for (int c = 0; c < 3; ++c) ASSERT_EQ(pixel[c] % 257, 0);
  }
  EXPECT_LE(cv::norm(held, deep, cv::NORM_INF), 256);
}

TEST_F(LoadTest, GrayBecomesThreeEqualChannels) {
  cv::Mat gray;
  cv::cvtColor(SmallPicture(), gray, cv::COLOR_BGR2GRAY);
  for (const char* name : {"gray.png", "gray.jpg"}) {
    const std::string path = WritePicture(name, gray);
    ASSERT_EQ(Load(path), LUMVIK_OK);
    std::vector<cv::Mat> channels;
    cv::split(Held(), channels);
    ASSERT_EQ(channels.size(), 3U);
    for (const cv::Mat& channel : channels) {
      EXPECT_TRUE(SameBytes(channel, Widened(cv::imread(path, cv::IMREAD_GRAYSCALE)))) << name;
    }
  }
}

TEST_F(LoadTest, AlphaIsReplacedByOpaque) {
  std::vector<cv::Mat> channels;
  cv::split(SmallPicture(), channels);
  channels.emplace_back(SmallPicture().size(), CV_8U, cv::Scalar(7));
  cv::Mat transparent;
  cv::merge(channels, transparent);
  ASSERT_EQ(Load(WritePicture("alpha.png", transparent)), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(Held(), Widened(SmallPicture())));
  cv::Mat alpha;
  cv::extractChannel(ctx()->source, alpha, 3);
  EXPECT_EQ(cv::countNonZero(alpha != 65535), 0);
}

TEST_F(LoadTest, LongSidesAreLimitedTo4096) {
  const cv::Scalar color(90, 150, 210);
  ASSERT_EQ(Load(WritePicture("a.jpg", cv::Mat(4000, 6000, CV_8UC3, color))), LUMVIK_OK);
  EXPECT_EQ(Size(), cv::Size(4096, 2731));
  ASSERT_EQ(Load(WritePicture("a.png", cv::Mat(4097, 30, CV_8UC3, color))), LUMVIK_OK);
  EXPECT_EQ(Size(), cv::Size(30, 4096));
  ASSERT_EQ(Load(WritePicture("a.jpg", cv::Mat(300, 4096, CV_8UC3, color))), LUMVIK_OK);
  EXPECT_EQ(Size(), cv::Size(4096, 300));
}

TEST_F(LoadTest, QualityDeterminesTheSizeOfARawFile) {
  const std::string path = WriteRaw("a.arw");
  const struct {
    int quality;
    cv::Size size;
  } cases[] = {{1, {48, 32}}, {2, {24, 16}}, {3, {24, 16}}, {4, {12, 8}}};
  for (const auto& c : cases) {
    ASSERT_EQ(Load(path, c.quality), LUMVIK_OK) << LastError();
    EXPECT_EQ(Size(), c.size) << c.quality;
  }
}

TEST_F(LoadTest, QualityIsClampedTo1To4) {
  const std::string path = WriteRaw("a.arw");
  ASSERT_EQ(Load(path, 1), LUMVIK_OK);
  const cv::Mat full = Exported();
  for (const int quality : {0, -5, std::numeric_limits<int>::min()}) {
    ASSERT_EQ(Load(path, quality), LUMVIK_OK);
    EXPECT_TRUE(SameBytes(Exported(), full)) << quality;
  }
  ASSERT_EQ(Load(path, 4), LUMVIK_OK);
  const cv::Mat quarter = Exported();
  for (const int quality : {5, 9, std::numeric_limits<int>::max()}) {
    ASSERT_EQ(Load(path, quality), LUMVIK_OK);
    EXPECT_TRUE(SameBytes(Exported(), quarter)) << quality;
  }
}

TEST_F(LoadTest, LongSidesOfRawFilesAreLimitedTo2000Or1000AtQuarterQuality) {
  RawOptions options;
  options.format = RawFormat::kDng;
  const std::string path = WriteRaw("wide.dng", options, cv::Mat(24, 4032, CV_8UC3, cv::Scalar(90, 120, 60)));
  for (const int quality : {1, 2, 3}) {
    ASSERT_EQ(Load(path, quality), LUMVIK_OK) << LastError();
    EXPECT_EQ(Size(), cv::Size(2000, 12)) << quality;
  }
  ASSERT_EQ(Load(path, 4), LUMVIK_OK);
  EXPECT_EQ(Size(), cv::Size(1000, 6));
}

TEST_F(LoadTest, ACameraFileKeepsItsSize) {
  ASSERT_EQ(Load(LUMVIK_SAMPLES "/sample_small.ARW"), LUMVIK_OK) << LastError();
  EXPECT_EQ(Size(), cv::Size(1600, 1066));
}

TEST_F(LoadTest, TheSourceOfARawFileIsACopy) {
  ASSERT_EQ(Load(WriteRaw("a.arw")), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(ctx()->source, ctx()->decoded.image));
  EXPECT_NE(ctx()->source.data, ctx()->decoded.image.data);
}

TEST_F(LoadTest, AnOrdinaryImageReplacesAllOfARawFile) {
  ASSERT_EQ(Load(WriteRaw("a.arw")), LUMVIK_OK);
  ASSERT_EQ(Load(WritePicture("a.png")), LUMVIK_OK);
  const ContextPtr fresh = CreateContext();
  ASSERT_EQ(lumvik_load_arw(fresh.get(), Path("a.png").c_str(), 1), LUMVIK_OK);
  EXPECT_TRUE(ctx()->decoded.image.empty());
  EXPECT_EQ(Describe(*ctx()), Describe(*fresh));
}

TEST_F(LoadTest, EachLoadReplacesThePreviousImage) {
  const std::string ordinary = WritePicture("a.png");
  const std::string raw = WriteRaw("a.arw");
  ASSERT_EQ(Load(raw), LUMVIK_OK);
  const cv::Mat developed = Held();
  ASSERT_EQ(Load(ordinary), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(Held(), Widened(SmallPicture())));
  ASSERT_EQ(Load(raw), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(Held(), developed));
  lumvik_unload(ctx());
  ASSERT_EQ(Load(ordinary), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(Held(), Widened(SmallPicture())));
}

TEST_F(LoadTest, MaskAndBackgroundBlurSurviveLoads) {
  SetMask();
  lumvik_set_bg_blur(ctx(), 60);
  for (const std::string& path : {WritePicture("a.png"), WriteRaw("a.arw")}) {
    ASSERT_EQ(Load(path), LUMVIK_OK);
    ExpectMask();
    EXPECT_EQ(ctx()->bg_blur, 60);
  }
  EXPECT_EQ(Load(Path("missing.png")), kFailed);
  lumvik_reset_adjustments(ctx());
  ExpectMask();
  EXPECT_EQ(ctx()->bg_blur, 60);
}

TEST_F(LoadTest, UnloadingKeepsSettingsErrorMaskAndBlur) {
  for (const std::string& path : {WritePicture("a.png"), WriteRaw("a.arw")}) {
    ASSERT_EQ(Load(path), LUMVIK_OK);
    lumvik_set_exposure(ctx(), 0.5F);
    lumvik_reset_tone_curve(ctx(), LUMVIK_CURVE_BLUE);
    lumvik_set_bg_blur(ctx(), 60);
    SetMask();
    ctx()->last_error = "kept";
    ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
    const ContextPtr expected = CreateContext();
    expected->adjustments = ctx()->adjustments;
    expected->bg_blur = 60;
    expected->mask = ctx()->mask.clone();
    expected->mask_valid = true;
    expected->last_error = "kept";
    lumvik_unload(ctx());
    EXPECT_EQ(Describe(*ctx()), Describe(*expected));
  }
}

TEST_F(LoadTest, UnloadingAnEmptyContextChangesNothing) {
  lumvik_unload(nullptr);
  lumvik_unload(ctx());
  EXPECT_EQ(Describe(*ctx()), Describe(*CreateContext()));
}

// A failed RAW load also stores its path and text in the decoder's record.
TEST_F(LoadTest, AFailedLoadChangesOnlyTheErrorAndTheRenderState) {
  const std::string missing_raw = Path("missing.arw");
  const std::string missing_ordinary = Path("missing.png");
  const std::string raw_text = std::string("LibRaw open_file failed: ") + libraw_strerror(LIBRAW_IO_ERROR);
  for (const std::string& path : {WritePicture("a.png"), WriteRaw("a.arw")}) {
    const auto loaded = [&path] {
      ContextPtr context = CreateContext();
      EXPECT_EQ(lumvik_load_arw(context.get(), path.c_str(), 1), LUMVIK_OK);
      lumvik_set_exposure(context.get(), 0.25F);
      EXPECT_EQ(lumvik_process(context.get()), LUMVIK_OK);
      return context;
    };
    const ContextPtr context = loaded();
    const ContextPtr expected = loaded();
    expected->render_valid = false;
    expected->last_error = kUnreadable + missing_ordinary;
    EXPECT_EQ(lumvik_load_arw(context.get(), missing_ordinary.c_str(), 1), kFailed);
    EXPECT_EQ(Describe(*context), Describe(*expected));

    expected->last_error = raw_text;
    expected->decoded.path = missing_raw;
    expected->decoded.error = raw_text;
    EXPECT_EQ(lumvik_load_arw(context.get(), missing_raw.c_str(), 1), kFailed);
    EXPECT_EQ(Describe(*context), Describe(*expected));
    EXPECT_TRUE(SameBytes(Exported(context.get()), Exported(loaded().get())));
  }
}

TEST_F(LoadTest, ThePathIsCopied) {
  std::string path = WritePicture("a.jpg");
  ASSERT_EQ(Load(path), LUMVIK_OK);
  const std::string copy = path;
  path.assign(path.size(), 'x');
  EXPECT_EQ(ctx()->source_path, copy);
}

TEST_F(LoadTest, UnicodePaths) {
  const std::string folder = Path("фото 写真 été");
  std::filesystem::create_directory(std::filesystem::u8path(folder));
  std::filesystem::rename(WritePicture("a.png"), std::filesystem::u8path(folder + "/schöner Tag.png"));
  std::filesystem::rename(WriteRaw("a.arw"), std::filesystem::u8path(folder + "/Ärger.arw"));
  for (const std::string& path : {folder + "/schöner Tag.png", folder + "/Ärger.arw"}) {
    ASSERT_EQ(Load(path), LUMVIK_OK) << LastError();
    EXPECT_EQ(Size(), cv::Size(48, 32));
    EXPECT_EQ(ctx()->source_path, path);
  }
  EXPECT_EQ(Load(folder + "/нет.png"), kFailed);
  EXPECT_EQ(LastError(), kUnreadable + folder + "/нет.png");
}

}  // namespace
}  // namespace lumvik::test
