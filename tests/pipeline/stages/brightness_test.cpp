#include "pipeline/stages/brightness.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "pipeline/packed_rows.h"
#include "pipeline/row_steps.h"

namespace lumvik {
namespace {

TEST(BrightnessExponent, RunsFromTwoToTwoThirds) {
  EXPECT_EQ(BrightnessExponent(-100), 2.0F);
  EXPECT_FLOAT_EQ(BrightnessExponent(100), 2.0F / 3.0F);
}

TEST(BrightnessExponent, IsHeldToItsBounds) {
  for (const float brightness : {-200.0F, -190.0F, -181.0F}) EXPECT_EQ(BrightnessExponent(brightness), 10.0F);
  EXPECT_FLOAT_EQ(BrightnessExponent(-180), 10.0F);
  for (const float brightness : {-201.0F, -1000.0F, 1e6F}) EXPECT_EQ(BrightnessExponent(brightness), 0.1F);
  EXPECT_TRUE(std::isnan(BrightnessExponent(std::numeric_limits<float>::quiet_NaN())));
}

TEST(Brightness, SquaresColorsAndKeepsAlpha) {
  cv::Mat pixel(1, 1, CV_32FC4, cv::Scalar(0.5, 0.25, 1.0, 0.5));
  RunRowSteps(RowsOf(pixel), {Brightness(-100)}, StoreIn(pixel));
  const auto result = pixel.at<cv::Vec4f>(0, 0);
  EXPECT_NEAR(result[0], 0.25F, 2e-7F);
  EXPECT_NEAR(result[1], 0.0625F, 2e-7F);
  EXPECT_NEAR(result[2], 1.0F, 2e-7F);
  EXPECT_EQ(result[3], 0.5F);
}

TEST(Brightness, IsTheIdentityWhenTheExponentIsOne) {
  EXPECT_TRUE(Brightness(1e-7F).IsIdentity());
  EXPECT_FALSE(Brightness(0.01F).IsIdentity());
  EXPECT_FALSE(Brightness(std::numeric_limits<float>::quiet_NaN()).IsIdentity());
}

}  // namespace
}  // namespace lumvik
