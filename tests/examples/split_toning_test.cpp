// Worked examples of split toning.
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

class SplitToningExample : public test::PointStageExample {
 protected:
  Hsl Toned(const SplitToningSettings& settings, const cv::Vec4f& color) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.split_toning = settings;
    const cv::Vec4f pixel = Developed(color, adjustments);
    EXPECT_EQ(pixel[3], color[3]);
    return rgb_to_hsl(pixel[0], pixel[1], pixel[2]);
  }
};

TEST_P(SplitToningExample, GrayGainsColorAndKeepsItsLightness) {
  // k = 0.5, hue 0.5 x 0.5 x 0.25 of the way from 0.
  const Hsl hsl = Toned({180, 100, 0, 0, 0}, {0.5F, 0.5F, 0.5F, 0.7F});
  EXPECT_NEAR(hsl.s, 0.5 * 0.3, 1e-5);
  EXPECT_NEAR(hsl.h, 0.5 * 0.5 * 0.25, 1e-5);
  EXPECT_NEAR(hsl.l, 0.5, 1e-6);
}

TEST_P(SplitToningExample, MiddleGrayWeighsBothZonesByHalf) {
  const cv::Vec4f gray(0.5F, 0.5F, 0.5F, 1);
  EXPECT_NEAR(Toned({0, 80, 0, 0, 0}, gray).s, 0.5 * 0.8 * 0.3, 1e-5);
  EXPECT_NEAR(Toned({0, 0, 0, 80, 0}, gray).s, 0.5 * 0.8 * 0.3, 1e-5);
  EXPECT_NEAR(Toned({0, 80, 0, 60, 0}, gray).s, 0.5 * 1.4 * 0.3, 1e-5);
}

TEST_P(SplitToningExample, BalanceMovesTheZones) {
  const cv::Vec4f gray(0.5F, 0.5F, 0.5F, 1);
  EXPECT_NEAR(Toned({0, 100, 0, 0, 100}, gray).s, 0.8 * 0.3, 1e-5);
  EXPECT_NEAR(Toned({0, 0, 0, 100, 100}, gray).s, 0.2 * 0.3, 1e-5);
  EXPECT_NEAR(Toned({0, 100, 0, 0, -50}, gray).s, 0.35 * 0.3, 1e-5);
  EXPECT_NEAR(Toned({0, 100, 0, 0, 100}, {0.9F, 0.9F, 0.9F, 1}).s, 0.3, 1e-5) << "the weight is at most 1";
}

TEST_P(SplitToningExample, SaturationAdds) {
  const Hsl hsl = Toned({120, 100, 120, 100, 0}, {0.4F, 0.6F, 0.4F, 1});
  EXPECT_NEAR(hsl.s, 0.2 + 0.3, 1e-5);
}

// Hue 15 degrees, where the middle component depends on the saturation.
TEST_P(SplitToningExample, SaturationIsClamped) {
  const Hsl saturated = Toned({15, 100, 15, 100, 0}, {1, 0.25F, 0, 1});
  EXPECT_NEAR(saturated.s, 1, 1e-5);
  EXPECT_NEAR(saturated.h, 15 / 360.0, 1e-5);
  EXPECT_NEAR(Toned({0, -100, 0, -100, 0}, {0.55F, 0.5F, 0.45F, 1}).s, 0, 1e-6);
}

TEST_P(SplitToningExample, HueMovesWithoutWrappingRound) {
  // From 330 degrees half way to a target at 0, the long way round: 165 degrees.
  const Rgb pixel = hsl_to_rgb(330 / 360.0F, 0.4F, 0.5F);
  const Hsl hsl = Toned({0, 100, 0, 100, 0}, {pixel.r, pixel.g, pixel.b, 1});
  EXPECT_NEAR(hsl.h, 165 / 360.0, 1e-5);
}

TEST_P(SplitToningExample, HueGoesToTheWeightedMix) {
  // Luminance 0.5: the mix of 60 and 180 degrees is 120; k = 0.5 takes a quarter of the way from 0.
  const Hsl hsl = Toned({60, 100, 180, 0, 0}, {0.5F, 0.5F, 0.5F, 1});
  EXPECT_NEAR(hsl.h, 120 / 360.0 * 0.25, 1e-5);
}

TEST_P(SplitToningExample, NoSaturationSkipsTheStage) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.split_toning = {200, 0, 40, 0, 50};
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_EQ(Developed(over, adjustments), over);
}

INSTANTIATE_TEST_SUITE_P(Subjects, SplitToningExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
