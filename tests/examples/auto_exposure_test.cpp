#include "reference/auto_exposure.h"

#include <gtest/gtest.h>

namespace lumvik::reference {
namespace {

float OfUniform(double level) {
  return AutoExposure(cv::Mat(9, 5, CV_16UC4, cv::Scalar::all(level * 65535)));
}

TEST(AutoExposure, OfUniformImages) {
  EXPECT_NEAR(OfUniform(0.45), -0.0011F, 5e-5F);
  EXPECT_EQ(OfUniform(0), 1.0F);
  EXPECT_EQ(OfUniform(1), -0.25F);
  EXPECT_NEAR(OfUniform(0.25), 0.2948F, 5e-4F);
}

TEST(AutoExposure, WithoutPixelsTheMedianIsInTheMiddle) {
  EXPECT_NEAR(ExposureFromHistogram({}), -0.0532F, 5e-5F);
}

}  // namespace
}  // namespace lumvik::reference
