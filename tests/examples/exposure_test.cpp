// Worked examples of the exposure stage.
#include <gtest/gtest.h>

#include <cmath>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;

class ExposureExample : public test::PointStageExample {
 protected:
  cv::Vec4f Exposed(const cv::Vec4f& color, float exposure) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.exposure = exposure;
    return Developed(color, adjustments);
  }
};

TEST_P(ExposureExample, OneStopDoublesBelowTheKnee) {
  const cv::Vec4f pixel = Exposed({0.3F, 0.1F, 0.2F, 1}, 1);
  EXPECT_NEAR(pixel[0], 0.6, 1e-6);
  EXPECT_NEAR(pixel[1], 0.2, 1e-6);
  EXPECT_NEAR(pixel[2], 0.4, 1e-6);
}

TEST_P(ExposureExample, GrayOnTheShoulder) {
  const cv::Vec4f pixel = Exposed({0.5F, 0.5F, 0.5F, 1}, 1);
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(pixel[c], 0.875, 1e-6);
}

TEST_P(ExposureExample, SaturatedRedFadesTowardsWhite) {
  const cv::Vec4f pixel = Exposed({1, 0, 0, 1}, 1);
  EXPECT_NEAR(pixel[0], 0.9583, 5e-5);
  EXPECT_NEAR(pixel[1], 0.4356, 5e-5);
  EXPECT_NEAR(pixel[2], 0.4356, 5e-5);
}

TEST_P(ExposureExample, MinusOneStopHalves) {
  const cv::Vec4f pixel = Exposed({1, 0.5F, 0.25F, 1}, -1);
  EXPECT_EQ(pixel, cv::Vec4f(0.5F, 0.25F, 0.125F, 1));
  EXPECT_EQ(Exposed({1.5F, 0, 0, 1}, -1)[1], 0.0F) << "1.5 lands on the knee, not beyond it";
  EXPECT_GT(Exposed({1.6F, 0, 0, 1}, -1)[1], 0.0F);
}

TEST_P(ExposureExample, ShoulderMeetsTheIdentityAtTheKnee) {
  EXPECT_NEAR(Exposed({0.4F, 0.4F, 0.4F, 1}, 1)[0], 1 - 0.0625 / 0.3, 1e-6);
  EXPECT_NEAR(Exposed({0.3751F, 0.3751F, 0.3751F, 1}, 1)[0], 0.7502, 1e-5);
}

TEST_P(ExposureExample, StaysWithinBlackAndWhite) {
  const cv::Vec4f pixel = Exposed({1, 0.5F, -0.2F, 0.4F}, 10);
  for (int c = 0; c < 3; ++c) {
    EXPECT_LE(pixel[c], 1.0F);
    EXPECT_GE(pixel[c], 0.0F);
  }
  EXPECT_NEAR(pixel[0], 1, 1e-4);
  EXPECT_EQ(pixel[3], 0.4F);
  EXPECT_EQ(Exposed({-0.2F, 0.1F, 0.1F, 1}, 1)[0], 0.0F);
}

TEST_P(ExposureExample, ZeroTouchesNothing) {
  EXPECT_EQ(Exposed({1.5F, -0.5F, 0.3F, 1}, 0), cv::Vec4f(1.5F, -0.5F, 0.3F, 1));
}

TEST_P(ExposureExample, NanIsNotNeutral) {
  EXPECT_TRUE(std::isnan(Exposed({0.5F, 0.5F, 0.5F, 1}, NAN)[0]));
}

INSTANTIATE_TEST_SUITE_P(Subjects, ExposureExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
