// Worked examples of highlights, shadows, whites and blacks.
#include <gtest/gtest.h>

#include <cmath>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;

class HighlightsShadowsExample : public test::PointStageExample {
 protected:
  cv::Vec4f Lit(float highlights, float shadows, const cv::Vec4f& color) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.highlights = highlights;
    adjustments.shadows = shadows;
    return Developed(color, adjustments);
  }
};

class WhitesBlacksExample : public test::PointStageExample {
 protected:
  cv::Vec4f Leveled(float whites, float blacks, const cv::Vec4f& color) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.whites = whites;
    adjustments.blacks = blacks;
    return Developed(color, adjustments);
  }
};

cv::Vec4f Gray(float level) {
  return {level, level, level, 1};
}

TEST_P(HighlightsShadowsExample, ShadowsLiftDarkTones) {
  EXPECT_NEAR(Lit(0, 100, Gray(0.1F))[0], 0.279, 5e-4);
  // Luminance 0.1 in color: the ratios stay.
  const cv::Vec4f color(0.1F, 0.1F * (1 - 0.2126F - 0.0722F * 0.5F) / 0.7152F, 0.05F, 1);
  const cv::Vec4f lifted = Lit(0, 100, color);
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(lifted[c] / color[c], 2.79, 5e-3);
}

TEST_P(HighlightsShadowsExample, HighlightsScaleBrightTones) {
  EXPECT_NEAR(Lit(-100, 0, Gray(1))[0], 0.5, 1e-6);
  EXPECT_EQ(Lit(100, 0, Gray(1)), Gray(1));
  // e = 0.5, f = 0.875.
  EXPECT_NEAR(Lit(-100, 0, Gray(0.725F))[0], 0.725 * 0.875, 1e-6);
}

TEST_P(HighlightsShadowsExample, ZonesOverlapInTheMiddle) {
  const double d = 0.05 / 0.55;
  const double lifted = std::pow(0.5, 1 / (d * d * 1.2 + 1));
  const double gain = 1 - d * d * 0.5;
  EXPECT_NEAR(Lit(-100, 100, Gray(0.5F))[0], lifted * gain, 1e-6);
}

TEST_P(HighlightsShadowsExample, TheHighlightTestTakesTheOriginalLuminance) {
  // 0.44 is lifted beyond 0.45 by the shadows and yet is no highlight.
  EXPECT_EQ(Lit(-100, 100, Gray(0.44F)), Lit(0, 100, Gray(0.44F)));
  EXPECT_GT(Lit(0, 100, Gray(0.44F))[0], 0.45F);
}

TEST_P(HighlightsShadowsExample, GammaAndGainAreBounded) {
  EXPECT_NEAR(Lit(0, 10000, Gray(0.1F))[0], std::pow(0.1, 0.3), 1e-6);
  EXPECT_NEAR(Lit(0, -120, Gray(0.1F))[0], std::pow(0.1, 3.0), 1e-6);
  EXPECT_NEAR(Lit(-1000, 0, Gray(1))[0], 0.3, 1e-6);
  EXPECT_NEAR(Lit(1000, 0, Gray(0.46F))[0], 0.46 * (1 + 0.01 * 0.01 / 0.55 / 0.55 * 5), 1e-5);
  EXPECT_NEAR(Lit(40000, 0, Gray(0.49F))[0], 0.98, 1e-6);
}

// 1 / (d² s 1.2 + 1) turns negative for strong negative shadows near black, and so lands on the lower bound.
TEST_P(HighlightsShadowsExample, NegativeShadowsDarkenButForTheDeepest) {
  EXPECT_LT(Lit(0, -100, Gray(0.2F))[0], 0.2F);
  EXPECT_NEAR(Lit(0, -100, Gray(0.01F))[0], std::pow(0.01, 0.3), 1e-5);
}

TEST_P(HighlightsShadowsExample, FaintSettingsAct) {
  EXPECT_GT(Lit(0, 1, Gray(0.1F))[0], 0.1001F);
  EXPECT_GT(Lit(1, 0, Gray(0.9F))[0], 0.9001F);
}

TEST_P(HighlightsShadowsExample, BlackStaysBlack) {
  for (const float setting : {-100.0F, 100.0F}) {
    EXPECT_EQ(Lit(setting, setting, Gray(0)), Gray(0));
    EXPECT_EQ(Lit(setting, setting, Gray(9e-7F)), Gray(9e-7F));
  }
  EXPECT_NE(Lit(0, 100, Gray(1.05e-6F)), Gray(1.05e-6F));
}

TEST_P(HighlightsShadowsExample, UnchangedLuminanceIsNotClamped) {
  EXPECT_EQ(Lit(0, 100, Gray(1.5F)), Gray(1.5F)) << "beyond the shadow zone";
  EXPECT_EQ(Lit(0, 0, Gray(1.5F)), Gray(1.5F));
  EXPECT_EQ(Lit(10, 0, Gray(1.5F)), Gray(1)) << "a changed pixel is clamped";
}

TEST_P(HighlightsShadowsExample, KeepsAlpha) {
  EXPECT_EQ(Lit(50, 50, {0.2F, 0.2F, 0.2F, 0.4F})[3], 0.4F);
}

TEST_P(WhitesBlacksExample, BlacksMoveTheBlackPoint) {
  EXPECT_NEAR(Leveled(0, -100, Gray(0))[0], 0.0909, 5e-5);
  EXPECT_NEAR(Leveled(0, 100, Gray(0.1F))[0], 0, 1e-7);
  EXPECT_EQ(Leveled(0, 100, Gray(0.05F)), Gray(0));
  EXPECT_NEAR(Leveled(0, 100, Gray(1))[0], 1, 1e-6);
}

TEST_P(WhitesBlacksExample, PositiveWhitesDarken) {
  EXPECT_NEAR(Leveled(100, 0, Gray(1))[0], 0.8333, 5e-5);
  EXPECT_NEAR(Leveled(-100, 0, Gray(0.4F))[0], 0.5, 1e-6);
  EXPECT_EQ(Leveled(-100, 0, Gray(0.9F)), Gray(1));
}

TEST_P(WhitesBlacksExample, BothPoints) {
  EXPECT_NEAR(Leveled(50, 50, Gray(0.575F))[0], (0.575 - 0.05) / (1.1 - 0.05), 1e-6);
}

TEST_P(WhitesBlacksExample, OnlyNeutralSettingsKeepOverflow) {
  EXPECT_EQ(Leveled(0, 0, {1.5F, -0.5F, 0.5F, 1}), cv::Vec4f(1.5F, -0.5F, 0.5F, 1));
  EXPECT_EQ(Leveled(1, 0, {1.5F, -0.5F, 0.5F, 1.5F})[0], 1.0F);
  EXPECT_EQ(Leveled(1, 0, {1.5F, -0.5F, 0.5F, 1.5F})[1], 0.0F);
  EXPECT_EQ(Leveled(1, 0, {1.5F, -0.5F, 0.5F, 1.5F})[3], 1.5F);
}

INSTANTIATE_TEST_SUITE_P(Subjects, HighlightsShadowsExample, test::StageSubjects(), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, WhitesBlacksExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
