// Each setter stores its value and nothing else.
#include <cmath>
#include <iterator>
#include <limits>

#include "api_test.h"
#include "float_setters.h"

namespace lumvik::test {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

class AdjustmentSettersTest : public ApiTest {
 protected:
  Adjustments& stored() const { return ctx()->adjustments; }

  // Expects these settings in a context that is otherwise new.
  void ExpectOnly(const Adjustments& expected) const {
    const ContextPtr other = CreateContext();
    other->adjustments = expected;
    EXPECT_EQ(Describe(*ctx()), Describe(*other));
  }

  // Sets every setting to a non-default value.
  void ChangeEverything() const;
};

void AdjustmentSettersTest::ChangeEverything() const {
  for (const FloatSetter& setter : kFloatSetters) setter.set(ctx(), 77);
  lumvik_set_flip_h(ctx(), 1);
  lumvik_set_flip_v(ctx(), 1);
  lumvik_set_crop(ctx(), 0.1F, 0.2F, 0.3F, 0.4F);
  for (int band = 0; band < LUMVIK_BAND_COUNT; ++band) lumvik_set_hsl(ctx(), band, 1, 2, 3);
  lumvik_set_split_toning(ctx(), LUMVIK_ZONE_HIGHLIGHTS, 1, 2, 3);
  lumvik_set_split_toning(ctx(), LUMVIK_ZONE_SHADOWS, 4, 5, 6);
  const float points[] = {0, 0.1F, 1, 0.9F};
  for (int channel = 0; channel < kToneCurveCount; ++channel)
    lumvik_set_tone_curve(ctx(), channel, points, 2);
}

TEST_F(AdjustmentSettersTest, ANewContextHasTheDefaults) {
  EXPECT_EQ(std::size(kFloatSetters), 31U);
  for (const FloatSetter& setter : kFloatSetters)
    EXPECT_EQ(stored().*setter.field, setter.initial) << setter.name;
  EXPECT_EQ(stored().flip_h, 0);
  EXPECT_EQ(stored().flip_v, 0);
  for (const float edge : {stored().crop.x, stored().crop.y, stored().crop.w, stored().crop.h})
    EXPECT_EQ(edge, 0);
  for (const HslBand& band : stored().hsl) {
    EXPECT_EQ(band.hue, 0);
    EXPECT_EQ(band.saturation, 0);
    EXPECT_EQ(band.luminance, 0);
  }
  EXPECT_EQ(stored().split_toning.highlight_hue, 0);
  EXPECT_EQ(stored().split_toning.highlight_saturation, 0);
  EXPECT_EQ(stored().split_toning.shadow_hue, 0);
  EXPECT_EQ(stored().split_toning.shadow_saturation, 0);
  EXPECT_EQ(stored().split_toning.balance, 0);
  for (const ToneCurve& curve : stored().tone_curves) EXPECT_TRUE(curve.empty());
  EXPECT_EQ(ctx()->bg_blur, 0);
}

TEST_F(AdjustmentSettersTest, EachSetterStoresItsValueUncheckedAndNothingElse) {
  for (const FloatSetter& setter : kFloatSetters) {
    for (const float value : {1000.0F, -1e30F, 0.1F, -0.0F, kInfinity, kNan}) {
      SCOPED_TRACE(setter.name);
      setter.set(ctx(), value);
      Adjustments expected;
      expected.*setter.field = value;
      ExpectOnly(expected);
    }
    setter.set(ctx(), setter.initial);
  }
}

TEST_F(AdjustmentSettersTest, FlipsStoreTheInteger) {
  for (const int value : {1, -1, 2, 0x7fffffff, 0}) {
    lumvik_set_flip_h(ctx(), value);
    Adjustments expected;
    expected.flip_h = value;
    ExpectOnly(expected);
  }
  for (const int value : {1, -1, 2, 0x7fffffff, 0}) {
    lumvik_set_flip_v(ctx(), value);
    Adjustments expected;
    expected.flip_v = value;
    ExpectOnly(expected);
  }
}

TEST_F(AdjustmentSettersTest, CropStoresItsValuesUnchecked) {
  const CropRectangle crops[] = {{0.1F, 0.2F, 0.3F, 0.4F}, {0.9F, 0.8F, -5, 1000}, {kNan, -1, kNan, 0}};
  for (const CropRectangle& crop : crops) {
    lumvik_set_crop(ctx(), crop.x, crop.y, crop.w, crop.h);
    Adjustments expected;
    expected.crop = crop;
    ExpectOnly(expected);
  }
}

TEST_F(AdjustmentSettersTest, HslStoresTheBand) {
  Adjustments expected;
  for (int band = 0; band < LUMVIK_BAND_COUNT; ++band) {
    const auto number = static_cast<float>(band + 1);
    lumvik_set_hsl(ctx(), band, number, -1000 * number, 0.5F * number);
    expected.hsl[static_cast<size_t>(band)] = {number, -1000 * number, 0.5F * number};
    ExpectOnly(expected);
  }
}

TEST_F(AdjustmentSettersTest, HslIgnoresInvalidBands) {
  for (const int band : {8, -1, 1000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    lumvik_set_hsl(ctx(), band, 1, 2, 3);
    ExpectOnly(Adjustments());
  }
}

TEST_F(AdjustmentSettersTest, SplitToningZoneZeroStoresHighlightsAndBalance) {
  lumvik_set_split_toning(ctx(), 0, 40, 60, 0.7F);
  Adjustments expected;
  expected.split_toning.highlight_hue = 40;
  expected.split_toning.highlight_saturation = 60;
  expected.split_toning.balance = 0.7F;
  ExpectOnly(expected);
}

TEST_F(AdjustmentSettersTest, SplitToningOfAnyOtherZoneStoresShadowsWithoutBalance) {
  lumvik_set_split_toning(ctx(), 0, 0, 0, 25);
  for (const int zone : {1, 2, -1, std::numeric_limits<int>::max()}) {
    lumvik_set_split_toning(ctx(), zone, 200, static_cast<float>(zone), 0.7F);
    Adjustments expected;
    expected.split_toning.shadow_hue = 200;
    expected.split_toning.shadow_saturation = static_cast<float>(zone);
    expected.split_toning.balance = 25;
    ExpectOnly(expected);
  }
}

TEST_F(AdjustmentSettersTest, BackgroundBlurIsClampedAndNanBecomes100) {
  const struct {
    float given;
    float stored;
  } cases[] = {{150, 100},     {-3, 0},          {42.5F, 42.5F},  {0, 0},      {100, 100},
               {1e-6F, 1e-6F}, {kInfinity, 100}, {-kInfinity, 0}, {kNan, 100}, {100.001F, 100}};
  for (const auto& c : cases) {
    lumvik_set_bg_blur(ctx(), c.given);
    EXPECT_EQ(ctx()->bg_blur, c.stored) << c.given;
    EXPECT_EQ(Describe(stored()), Describe(Adjustments()));
  }
}

TEST_F(AdjustmentSettersTest, ToneCurveKeepsTheOrderOfItsPoints) {
  const float points[] = {0.9F, 0.1F, 0.2F, 0.8F, 0.2F, 0.3F, -4, 1000};
  for (int channel = 0; channel < kToneCurveCount; ++channel) {
    lumvik_set_tone_curve(ctx(), channel, points, 4);
    Adjustments expected;
    expected.tone_curves[static_cast<size_t>(channel)] = {
        {0.9F, 0.1F}, {0.2F, 0.8F}, {0.2F, 0.3F}, {-4, 1000}};
    ExpectOnly(expected);
    stored() = Adjustments();
  }
}

TEST_F(AdjustmentSettersTest, ToneCurveReplacesThePreviousOne) {
  const float long_curve[] = {0, 0, 0.3F, 0.4F, 1, 1};
  const float out_of_order[] = {1, 0, 0, 1};
  lumvik_set_tone_curve(ctx(), LUMVIK_CURVE_GREEN, long_curve, 3);
  lumvik_set_tone_curve(ctx(), LUMVIK_CURVE_GREEN, out_of_order, 2);
  Adjustments expected;
  expected.tone_curves[LUMVIK_CURVE_GREEN] = {{1, 0}, {0, 1}};
  ExpectOnly(expected);
}

TEST_F(AdjustmentSettersTest, ToneCurveCopiesThePoints) {
  float points[] = {0, 0.25F, 1, 0.75F};
  lumvik_set_tone_curve(ctx(), LUMVIK_CURVE_MASTER, points, 2);
  for (float& value : points) value = -1;
  Adjustments expected;
  expected.tone_curves[LUMVIK_CURVE_MASTER] = {{0, 0.25F}, {1, 0.75F}};
  ExpectOnly(expected);
}

TEST_F(AdjustmentSettersTest, ToneCurveIgnoresInvalidArguments) {
  const float points[] = {0, 0.25F, 1, 0.75F};
  lumvik_set_tone_curve(ctx(), LUMVIK_CURVE_RED, points, 2);
  const std::string before = Describe(*ctx());
  const float other[] = {0.5F, 0.5F, 1, 1};
  for (const int count : {1, 0, -1, std::numeric_limits<int>::min()}) {
    lumvik_set_tone_curve(ctx(), LUMVIK_CURVE_RED, other, count);
  }
  for (const int channel : {-1, 4, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    lumvik_set_tone_curve(ctx(), channel, other, 2);
  }
  lumvik_set_tone_curve(ctx(), LUMVIK_CURVE_RED, nullptr, 2);
  EXPECT_EQ(Describe(*ctx()), before);
}

TEST_F(AdjustmentSettersTest, ResettingAToneCurveStoresTwoPoints) {
  const float points[] = {0, 0.1F, 0.5F, 0.5F, 1, 0.9F};
  lumvik_set_tone_curve(ctx(), LUMVIK_CURVE_RED, points, 3);
  lumvik_set_tone_curve(ctx(), LUMVIK_CURVE_BLUE, points, 3);
  for (int channel = 0; channel < kToneCurveCount; ++channel) {
    Adjustments expected = stored();
    lumvik_reset_tone_curve(ctx(), channel);
    expected.tone_curves[static_cast<size_t>(channel)] = {{0, 0}, {1, 1}};
    ExpectOnly(expected);
  }
}

TEST_F(AdjustmentSettersTest, ResettingAToneCurveIgnoresInvalidChannels) {
  for (const int channel : {-1, 4, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    lumvik_reset_tone_curve(ctx(), channel);
    ExpectOnly(Adjustments());
  }
}

TEST_F(AdjustmentSettersTest, ResettingRestoresEveryDefaultExceptTheBackgroundBlur) {
  ChangeEverything();
  lumvik_set_bg_blur(ctx(), 30);
  lumvik_reset_adjustments(ctx());
  EXPECT_EQ(stored().temperature, 5500);
  for (const ToneCurve& curve : stored().tone_curves) EXPECT_TRUE(curve.empty());
  EXPECT_EQ(Describe(stored()), Describe(Adjustments()));
  EXPECT_EQ(ctx()->bg_blur, 30);
}

TEST_F(AdjustmentSettersTest, LoadingRestoresEveryDefaultExceptTheBackgroundBlur) {
  for (const std::string& path : {WritePicture("a.png"), WriteRaw("a.arw")}) {
    ChangeEverything();
    lumvik_set_bg_blur(ctx(), 30);
    ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), LUMVIK_OK) << LastError();
    EXPECT_EQ(Describe(stored()), Describe(Adjustments()));
    EXPECT_EQ(ctx()->bg_blur, 30);
  }
}

TEST_F(AdjustmentSettersTest, OnlyALoadOrAResetChangesSettings) {
  LoadNeutral();
  ChangeEverything();
  const std::string before = Describe(stored());
  lumvik_set_sharpening_amount(ctx(), 77);
  EXPECT_EQ(lumvik_load_arw(ctx(), Path("missing.png").c_str(), 1), kFailed);
  EXPECT_EQ(lumvik_load_arw(ctx(), Path("missing.arw").c_str(), 1), kFailed);
  EXPECT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_EQ(lumvik_export_tiff(ctx(), Path("out.tif").c_str()), LUMVIK_OK);
  lumvik_unload(ctx());
  EXPECT_EQ(lumvik_process(ctx()), kFailed);
  EXPECT_EQ(Describe(stored()), before);
}

TEST_F(AdjustmentSettersTest, SettersNeverTouchTheRender) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  const cv::Mat rendered = Exported();
  ChangeEverything();
  lumvik_reset_tone_curve(ctx(), LUMVIK_CURVE_MASTER);
  lumvik_set_bg_blur(ctx(), 100);
  EXPECT_TRUE(ctx()->render_valid);
  EXPECT_TRUE(SameBytes(Exported(), rendered));
}

}  // namespace
}  // namespace lumvik::test
