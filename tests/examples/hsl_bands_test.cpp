// Worked examples of the HSL bands.
#include <gtest/gtest.h>

#include "examples/stage_example.h"
#include "reference/hsl_color.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;

using reference::Hsl;
using reference::hsl_to_rgb;
using reference::Rgb;
using reference::rgb_to_hsl;

constexpr float kTurn = 360.0F;

cv::Vec4f Color(const Hsl& hsl) {
  const Rgb rgb = hsl_to_rgb(hsl.h, hsl.s, hsl.l);
  return {rgb.r, rgb.g, rgb.b, 1};
}

class HslBandsExample : public test::PointStageExample {
 protected:
  Hsl Shifted(const Adjustments& adjustments, const Hsl& hsl) const {
    const cv::Vec4f pixel = Developed(Color(hsl), adjustments);
    return rgb_to_hsl(pixel[0], pixel[1], pixel[2]);
  }

  Hsl Shifted(size_t band, const HslBand& shift, const Hsl& hsl) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.hsl[band] = shift;
    return Shifted(adjustments, hsl);
  }

  // How much a band acts on a hue in turns: a luminance of 100 percent adds half of the weight.
  double Weight(float hue, size_t band) const {
    constexpr float kLightness = 0.25F;
    return 2 * (static_cast<double>(Shifted(band, {0, 0, 100}, {hue, 0.5F, kLightness}).l) - kLightness);
  }
};

TEST_P(HslBandsExample, BandCenters) {
  const float degrees[kHslBandCount] = {0, 30, 60, 120, 180, 240, 280, 300};
  for (size_t band = 0; band < kHslBandCount; ++band) {
    EXPECT_NEAR(Weight(degrees[band] / kTurn, band), 1, 1e-5) << band;
  }
}

TEST_P(HslBandsExample, WeightsBetweenTwoBands) {
  const double red = Weight(15 / kTurn, 0);
  const double orange = Weight(15 / kTurn, 1);
  EXPECT_NEAR(red, 0.537, 5e-4);
  EXPECT_NEAR(orange, 0.537, 5e-4);
  EXPECT_NEAR(red + orange, 1.074, 5e-4);
  for (size_t band = 2; band < kHslBandCount; ++band) EXPECT_EQ(Weight(15 / kTurn, band), 0.0F);
}

TEST_P(HslBandsExample, NinetyDegreesIsFarFromEveryBand) {
  EXPECT_NEAR(Weight(0.25F, 2), 0.074, 5e-4);
  EXPECT_NEAR(Weight(0.25F, 3), 0.074, 5e-4);
  EXPECT_EQ(Weight(0.25F, 1), 0.0F);
}

TEST_P(HslBandsExample, RedReachesRoundTheCircle) {
  EXPECT_NEAR(Weight(0.97F, 0), 1 - 0.03 / 0.09, 1e-5);
  EXPECT_EQ(Weight(0.9F, 0), 0.0F);
}

TEST_P(HslBandsExample, ShiftsAddWithoutNormalizing) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.hsl[0].luminance = 40;
  adjustments.hsl[1].luminance = 40;
  const cv::Vec4f pixel = Developed(Color({15 / kTurn, 0.5F, 0.4F}), adjustments);
  const Hsl hsl = rgb_to_hsl(pixel[0], pixel[1], pixel[2]);
  EXPECT_NEAR(hsl.l, 0.4 + 1.074 * 40 / 200, 2e-4);
  EXPECT_NEAR(hsl.h, 15 / kTurn, 1e-5);
  EXPECT_NEAR(hsl.s, 0.5, 1e-5);
}

TEST_P(HslBandsExample, EachShiftHasItsScale) {
  const Hsl green{1 / 3.0F, 0.4F, 0.5F};
  EXPECT_NEAR(Shifted(3, {36, 0, 0}, green).h, 1 / 3.0 + 0.1, 1e-5);
  EXPECT_NEAR(Shifted(3, {-36, 0, 0}, green).h, 1 / 3.0 - 0.1, 1e-5);
  EXPECT_NEAR(Shifted(3, {0, 50, 0}, green).s, 0.6, 1e-5);
  EXPECT_NEAR(Shifted(3, {0, -100, 0}, green).s, 0, 1e-5);
  EXPECT_NEAR(Shifted(3, {0, 0, 50}, green).l, 0.75, 1e-5);
  EXPECT_NEAR(Shifted(3, {0, 0, -50}, green).l, 0.25, 1e-5);
}

TEST_P(HslBandsExample, TheFaintestWeightsDoNotCount) {
  const auto lightness = [this](float weight) {
    const Hsl hsl{1 / 3.0F + 0.09F * (1 - weight), 0.5F, 0.3F};
    return Shifted(3, {0, 0, 1e6F}, hsl).l;
  };
  EXPECT_NEAR(lightness(1.05e-4F), 0.3 + 0.525, 0.02);
  EXPECT_NEAR(lightness(0.95e-4F), 0.3, 1e-5);
}

TEST_P(HslBandsExample, AFullTurnReturnsRed) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.hsl[0].hue = 360;
  const cv::Vec4f pixel = Developed({1, 0, 0, 0.5F}, adjustments);
  EXPECT_NEAR(pixel[0], 1, 1e-6);
  EXPECT_NEAR(pixel[1], 0, 1e-6);
  EXPECT_NEAR(pixel[2], 0, 1e-6);
  EXPECT_EQ(pixel[3], 0.5F);
}

TEST_P(HslBandsExample, GrayIsNeverTouched) {
  Adjustments adjustments = NeutralAdjustments();
  for (HslBand& band : adjustments.hsl) band = {90, 100, 50};
  const cv::Vec4f gray(0.4F, 0.4F, 0.4F, 1);
  EXPECT_EQ(Developed(gray, adjustments), gray);
  const cv::Vec4f nearly(0.5F, 0.5F, 0.50004F, 1);
  EXPECT_EQ(Developed(nearly, adjustments), nearly) << "saturation 0.00004";
  const cv::Vec4f pale(0.5F, 0.5F, 0.500105F, 1);
  EXPECT_NE(Developed(pale, adjustments), pale) << "saturation 0.000105";
}

TEST_P(HslBandsExample, OtherHuesKeepTheirColor) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.hsl[5] = {90, 100, 50};
  const cv::Vec4f green(0.123F, 0.7F, 0.456F, 1);
  const cv::Vec4f pixel = Developed(green, adjustments);
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(pixel[c], green[c], 1e-6);
}

TEST_P(HslBandsExample, NeutralKeepsOverflow) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_EQ(Developed(over, NeutralAdjustments()), over);
}

INSTANTIATE_TEST_SUITE_P(Subjects, HslBandsExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
