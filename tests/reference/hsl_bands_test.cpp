#include "reference/hsl_bands.h"

#include <gtest/gtest.h>

#include "reference/hsl_color.h"
#include "reference/pixel.h"

namespace lumvik::reference {
namespace {

constexpr float kTurn = 360.0F;

cv::Vec4f Color(float h, float s, float l) {
  const Rgb rgb = hsl_to_rgb(h, s, l);
  return {rgb.r, rgb.g, rgb.b, 1};
}

Hsl Shifted(size_t band, const HslBand& shift, const Hsl& hsl) {
  Adjustments adjustments;
  adjustments.hsl[band] = shift;
  const cv::Vec4f pixel = OnPixel(HslBands, adjustments, Color(hsl.h, hsl.s, hsl.l));
  return rgb_to_hsl(pixel[0], pixel[1], pixel[2]);
}

TEST(HslBands, BandCenters) {
  const float degrees[kHslBandCount] = {0, 30, 60, 120, 180, 240, 280, 300};
  for (size_t band = 0; band < kHslBandCount; ++band) {
    EXPECT_NEAR(HslBandWeight(degrees[band] / kTurn, band), 1, 1e-5) << band;
  }
}

TEST(HslBands, WeightsBetweenTwoBands) {
  const float red = HslBandWeight(15 / kTurn, 0);
  const float orange = HslBandWeight(15 / kTurn, 1);
  EXPECT_NEAR(red, 0.537, 5e-4);
  EXPECT_NEAR(orange, 0.537, 5e-4);
  EXPECT_NEAR(red + orange, 1.074, 5e-4);
  for (size_t band = 2; band < kHslBandCount; ++band) EXPECT_EQ(HslBandWeight(15 / kTurn, band), 0.0F);
}

TEST(HslBands, NinetyDegreesIsFarFromEveryBand) {
  EXPECT_NEAR(HslBandWeight(0.25F, 2), 0.074, 5e-4);
  EXPECT_NEAR(HslBandWeight(0.25F, 3), 0.074, 5e-4);
  EXPECT_EQ(HslBandWeight(0.25F, 1), 0.0F);
}

TEST(HslBands, RedReachesRoundTheCircle) {
  EXPECT_NEAR(HslBandWeight(0.97F, 0), 1 - 0.03 / 0.09, 1e-5);
  EXPECT_EQ(HslBandWeight(0.9F, 0), 0.0F);
}

TEST(HslBands, ShiftsAddWithoutNormalizing) {
  Adjustments adjustments;
  adjustments.hsl[0].luminance = 40;
  adjustments.hsl[1].luminance = 40;
  const cv::Vec4f pixel = OnPixel(HslBands, adjustments, Color(15 / kTurn, 0.5F, 0.4F));
  const Hsl hsl = rgb_to_hsl(pixel[0], pixel[1], pixel[2]);
  EXPECT_NEAR(hsl.l, 0.4 + 1.074 * 40 / 200, 2e-4);
  EXPECT_NEAR(hsl.h, 15 / kTurn, 1e-5);
  EXPECT_NEAR(hsl.s, 0.5, 1e-5);
}

TEST(HslBands, EachShiftHasItsScale) {
  const Hsl green{1 / 3.0F, 0.4F, 0.5F};
  EXPECT_NEAR(Shifted(3, {36, 0, 0}, green).h, 1 / 3.0 + 0.1, 1e-5);
  EXPECT_NEAR(Shifted(3, {-36, 0, 0}, green).h, 1 / 3.0 - 0.1, 1e-5);
  EXPECT_NEAR(Shifted(3, {0, 50, 0}, green).s, 0.6, 1e-5);
  EXPECT_NEAR(Shifted(3, {0, -100, 0}, green).s, 0, 1e-5);
  EXPECT_NEAR(Shifted(3, {0, 0, 50}, green).l, 0.75, 1e-5);
  EXPECT_NEAR(Shifted(3, {0, 0, -50}, green).l, 0.25, 1e-5);
}

TEST(HslBands, TheFaintestWeightsDoNotCount) {
  const auto lightness = [](float weight) {
    const Hsl hsl{1 / 3.0F + 0.09F * (1 - weight), 0.5F, 0.3F};
    return Shifted(3, {0, 0, 1e6F}, hsl).l;
  };
  EXPECT_NEAR(lightness(1.05e-4F), 0.3 + 0.525, 0.02);
  EXPECT_NEAR(lightness(0.95e-4F), 0.3, 1e-5);
}

TEST(HslBands, AFullTurnReturnsRed) {
  Adjustments adjustments;
  adjustments.hsl[0].hue = 360;
  const cv::Vec4f pixel = OnPixel(HslBands, adjustments, {1, 0, 0, 0.5F});
  EXPECT_NEAR(pixel[0], 1, 1e-6);
  EXPECT_NEAR(pixel[1], 0, 1e-6);
  EXPECT_NEAR(pixel[2], 0, 1e-6);
  EXPECT_EQ(pixel[3], 0.5F);
}

TEST(HslBands, GrayIsNeverTouched) {
  Adjustments adjustments;
  for (HslBand& band : adjustments.hsl) band = {90, 100, 50};
  const cv::Vec4f gray(0.4F, 0.4F, 0.4F, 1);
  EXPECT_EQ(OnPixel(HslBands, adjustments, gray), gray);
  const cv::Vec4f nearly(0.5F, 0.5F, 0.50004F, 1);
  EXPECT_EQ(OnPixel(HslBands, adjustments, nearly), nearly) << "saturation 0.00004";
  const cv::Vec4f pale(0.5F, 0.5F, 0.500105F, 1);
  EXPECT_NE(OnPixel(HslBands, adjustments, pale), pale) << "saturation 0.000105";
}

TEST(HslBands, OtherHuesKeepTheirColor) {
  Adjustments adjustments;
  adjustments.hsl[5] = {90, 100, 50};
  const cv::Vec4f green(0.123F, 0.7F, 0.456F, 1);
  const cv::Vec4f pixel = OnPixel(HslBands, adjustments, green);
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(pixel[c], green[c], 1e-6);
}

TEST(HslBands, NeutralKeepsOverflow) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_EQ(OnPixel(HslBands, Adjustments(), over), over);
}

}  // namespace
}  // namespace lumvik::reference
