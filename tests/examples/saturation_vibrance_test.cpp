// Worked examples of saturation and vibrance.
#include <gtest/gtest.h>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;

class SaturationVibranceExample : public test::PointStageExample {
 protected:
  cv::Vec4f Saturated(float saturation, float vibrance, const cv::Vec4f& color) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.saturation = saturation;
    adjustments.vibrance = vibrance;
    return Developed(color, adjustments);
  }
};

double Luma(double r, double g, double b) {
  return 0.2126 * r + 0.7152 * g + 0.0722 * b;
}

TEST_P(SaturationVibranceExample, MinusHundredIsGray) {
  const cv::Vec4f pixel = Saturated(-100, 0, {0.8F, 0.3F, 0.1F, 0.5F});
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(pixel[c], Luma(0.8, 0.3, 0.1), 1e-6);
  EXPECT_EQ(pixel[3], 0.5F);
}

TEST_P(SaturationVibranceExample, SaturationScalesTheDistanceFromGray) {
  const double luma = Luma(0.5, 0.4, 0.3);
  const cv::Vec4f pixel = Saturated(50, 0, {0.5F, 0.4F, 0.3F, 1});
  EXPECT_NEAR(pixel[0], (0.5 - luma) * 1.5 + luma, 1e-6);
  EXPECT_NEAR(pixel[1], (0.4 - luma) * 1.5 + luma, 1e-6);
  EXPECT_NEAR(pixel[2], (0.3 - luma) * 1.5 + luma, 1e-6);
}

TEST_P(SaturationVibranceExample, VibranceLeavesGrayAlone) {
  const cv::Vec4f pixel = Saturated(0, 100, {0.4F, 0.4F, 0.4F, 1});
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(pixel[c], 0.4, 1e-6);
}

TEST_P(SaturationVibranceExample, VibranceFallsWithColorfulness) {
  const double luma = Luma(0.5, 0.4, 0.4);
  const cv::Vec4f pixel = Saturated(0, 100, {0.5F, 0.4F, 0.4F, 1});
  EXPECT_NEAR(pixel[0], (0.5 - luma) * 1.56 + luma, 1e-6);
  EXPECT_NEAR(pixel[1], (0.4 - luma) * 1.56 + luma, 1e-6);
}

TEST_P(SaturationVibranceExample, WideSpreadGetsNoVibrance) {
  const cv::Vec4f pixel = Saturated(0, 100, {0.7F, 0.35F, 0.4F, 1});
  EXPECT_NEAR(pixel[0], 0.7, 1e-6);
  EXPECT_NEAR(pixel[1], 0.35, 1e-6);
  EXPECT_NEAR(pixel[2], 0.4, 1e-6);
}

TEST_P(SaturationVibranceExample, ColorfulnessIsMeasuredBeforeTheSaturation) {
  // The saturation takes all color away, so a measure taken after it would give the full factor 1.8.
  const double luma = Luma(0.5, 0.4, 0.4);
  const double reduced = (0.5 - luma) * 0.5 + luma;
  const double other = (0.4 - luma) * 0.5 + luma;
  const double luma2 = Luma(reduced, other, other);
  const cv::Vec4f pixel = Saturated(-50, 100, {0.5F, 0.4F, 0.4F, 1});
  EXPECT_NEAR(pixel[0], (reduced - luma2) * 1.56 + luma2, 1e-6);
}

TEST_P(SaturationVibranceExample, EitherSettingClamps) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1.5F);
  for (const cv::Vec4f& pixel : {Saturated(10, 0, over), Saturated(0, 10, over)}) {
    EXPECT_EQ(pixel[0], 1.0F);
    EXPECT_EQ(pixel[1], 0.0F);
    EXPECT_EQ(pixel[3], 1.5F);
  }
  EXPECT_EQ(Saturated(0, 0, over), over);
}

INSTANTIATE_TEST_SUITE_P(Subjects, SaturationVibranceExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
