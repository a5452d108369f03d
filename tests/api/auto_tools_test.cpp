// The automatic tools analyze the undeveloped image and change nothing.
#include <gmock/gmock.h>

#include <functional>
#include <opencv2/imgproc.hpp>

#include "analysis/auto_crop.h"
#include "analysis/auto_exposure.h"
#include "analysis/auto_straighten.h"
#include "analysis/scene_analysis.h"
#include "api_test.h"

namespace lumvik::test {
namespace {

using Values = std::vector<float>;

// A tool that writes `count` values.
struct Tool {
  const char* name;
  size_t count;
  int (*call)(EngineContext*, float* out);
  // What it writes for an image.
  Values (*expected)(const ImageBuffer&);
};

Values Slots(const ImageBuffer& image) {
  const Suggestions suggestions = analyze_scene(image);
  return {suggestions.begin(), suggestions.end()};
}

Values Crop(const ImageBuffer& image) {
  const CropRectangle crop = AutoCrop(image);
  return {crop.x, crop.y, crop.w, crop.h};
}

const Tool kTools[] = {
    {"exposure", 1, lumvik_auto_exposure,
     [](const ImageBuffer& image) { return Values{AutoExposure(image)}; }},
    {"white_balance", 2, [](auto* c, float* out) { return lumvik_auto_white_balance(c, out, out + 1); },
     [](const ImageBuffer&) {
       return Values{6500, 0};
     }},
    {"enhance", LUMVIK_ENHANCE_SLOTS, lumvik_auto_enhance, Slots},
    {"crop", 4, [](auto* c, float* out) { return lumvik_auto_crop(c, out, out + 1, out + 2, out + 3); },
     Crop},
    {"straighten", 1, lumvik_auto_straighten,
     [](const ImageBuffer& image) { return Values{AutoStraighten(image)}; }},
};

// Dark, with a bright tilted edge and a black corner, so that every tool suggests a change.
cv::Mat TiltedPicture() {
  cv::Mat picture(300, 450, CV_8UC3, cv::Scalar(60, 50, 40));
  const std::vector<cv::Point> ground = {{0, 220}, {449, 170}, {449, 299}, {0, 299}};
  cv::fillConvexPoly(picture, ground, cv::Scalar(90, 200, 160));
  picture(cv::Rect(0, 0, 120, 60)).setTo(cv::Scalar::all(0));
  return picture;
}

class AutoToolsTest : public ApiTest, public ::testing::WithParamInterface<Tool> {
 protected:
  Values Suggested() const {
    Values values(GetParam().count, -77.0F);
    EXPECT_EQ(GetParam().call(ctx(), values.data()), LUMVIK_OK) << LastError();
    return values;
  }

  void Load(const std::string& path) const {
    ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), LUMVIK_OK) << LastError();
  }
};

TEST_P(AutoToolsTest, FailsWithoutAnImageAndWritesNothing) {
  Values values(GetParam().count, -77.0F);
  EXPECT_EQ(GetParam().call(ctx(), values.data()), kFailed);
  EXPECT_EQ(LastError(), kNoImage);
  EXPECT_THAT(values, testing::Each(-77.0F));

  LoadNeutral();
  lumvik_unload(ctx());
  ctx()->last_error.clear();
  EXPECT_EQ(GetParam().call(ctx(), values.data()), kFailed);
  EXPECT_EQ(LastError(), kNoImage);
  EXPECT_THAT(values, testing::Each(-77.0F));
}

TEST_P(AutoToolsTest, AnalyzesAnOrdinaryImage) {
  Load(WritePicture("a.png", TiltedPicture()));
  EXPECT_EQ(Suggested(), GetParam().expected(ctx()->source));
}

TEST_P(AutoToolsTest, AnalyzesARawFile) {
  Load(WriteRaw("a.arw", {}, TiltedPicture()));
  EXPECT_EQ(Suggested(), GetParam().expected(ctx()->decoded.image));
}

TEST_P(AutoToolsTest, AnalyzesTheDecodedImageRatherThanTheSource) {
  Load(WriteRaw("a.arw", {}, TiltedPicture()));
  const Values expected = Suggested();
  ctx()->source.setTo(cv::Scalar::all(65535));
  EXPECT_EQ(Suggested(), expected);
  ctx()->source = ImageBuffer();
  EXPECT_EQ(Suggested(), expected);
}

TEST_P(AutoToolsTest, ChangesNothing) {
  for (const std::string& path :
       {WritePicture("a.png", TiltedPicture()), WriteRaw("a.arw", {}, TiltedPicture())}) {
    Load(path);
    lumvik_set_exposure(ctx(), 1.5F);
    ctx()->last_error = "another";
    for (const bool rendered : {false, true}) {
      if (rendered) {
        ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
      }
      const std::string before = Describe(*ctx());
      Suggested();
      EXPECT_EQ(Describe(*ctx()), before);
      EXPECT_EQ(ctx()->render_valid, rendered);
    }
  }
}

TEST_P(AutoToolsTest, IgnoresAdjustmentsAndRender) {
  Load(WritePicture("a.png", TiltedPicture()));
  const Values expected = Suggested();
  lumvik_set_exposure(ctx(), 3);
  lumvik_set_rotation(ctx(), 20);
  lumvik_set_crop(ctx(), 0.5F, 0.5F, 0.4F, 0.4F);
  EXPECT_EQ(Suggested(), expected);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_EQ(Suggested(), expected);
}

TEST_P(AutoToolsTest, AcceptsTinyAndThinImages) {
  for (const cv::Size size : {cv::Size(1, 1), cv::Size(3000, 1), cv::Size(2, 60)}) {
    Load(WritePicture("a.png", cv::Mat(size, CV_8UC3, cv::Scalar(10, 120, 200))));
    EXPECT_EQ(Suggested(), GetParam().expected(ctx()->source)) << size;
  }
}

INSTANTIATE_TEST_SUITE_P(Tools, AutoToolsTest, ::testing::ValuesIn(kTools),
                         [](const auto& tool) { return std::string(tool.param.name); });

class AutoToolsResultTest : public ApiTest {
 protected:
  AutoToolsResultTest() {
    EXPECT_EQ(lumvik_load_arw(ctx(), WritePicture("a.png", TiltedPicture()).c_str(), 1), LUMVIK_OK);
  }
};

TEST_F(AutoToolsResultTest, StraightenMeasuresTheTiltOfTheEdge) {
  float angle = 0;
  ASSERT_EQ(lumvik_auto_straighten(ctx(), &angle), LUMVIK_OK);
  EXPECT_NEAR(angle, 6.35F, 1.0F) << "50 pixels up over 449";
}

TEST_F(AutoToolsResultTest, RotatingByTheNegatedAngleLevels) {
  float before = 0;
  ASSERT_EQ(lumvik_auto_straighten(ctx(), &before), LUMVIK_OK);
  lumvik_set_rotation(ctx(), -before);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  const std::string leveled = Path("leveled.png");
  ASSERT_EQ(lumvik_export_png(ctx(), leveled.c_str(), 8), LUMVIK_OK);
  ASSERT_EQ(lumvik_load_arw(ctx(), leveled.c_str(), 1), LUMVIK_OK);
  float after = 90;
  ASSERT_EQ(lumvik_auto_straighten(ctx(), &after), LUMVIK_OK);
  EXPECT_LT(std::abs(after), std::abs(before) / 2);
}

TEST_F(AutoToolsResultTest, TheSuggestedCropCanBeApplied) {
  float x = 0;
  float y = 0;
  float w = 0;
  float h = 0;
  ASSERT_EQ(lumvik_auto_crop(ctx(), &x, &y, &w, &h), LUMVIK_OK);
  lumvik_set_crop(ctx(), x, y, w, h);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_LT(lumvik_get_width(ctx()), 440);
  EXPECT_NEAR(1.0 * lumvik_get_width(ctx()) / lumvik_get_height(ctx()), 1.5, 0.02);
}

TEST_F(AutoToolsResultTest, EnhanceSuggestsTheExposureInItsFirstSlot) {
  float slots[LUMVIK_ENHANCE_SLOTS] = {};
  float exposure = 0;
  ASSERT_EQ(lumvik_auto_enhance(ctx(), slots), LUMVIK_OK);
  ASSERT_EQ(lumvik_auto_exposure(ctx(), &exposure), LUMVIK_OK);
  EXPECT_NEAR(slots[0], exposure, 0.05);
  EXPECT_GT(exposure, 0.25F);
  EXPECT_NEAR(slots[4], 400 * 7200.0 / 135000, 0.3) << "the black corner";
}

}  // namespace
}  // namespace lumvik::test
