#include "pipeline/pixel_math.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <opencv2/core.hpp>

namespace lumvik {
namespace {

constexpr float kQuietNaN = std::numeric_limits<float>::quiet_NaN();

TEST(ClampUnit, BoundsAndKeepsNaN) {
  EXPECT_EQ(ClampUnit(-0.5F), 0.0F);
  EXPECT_EQ(ClampUnit(0.25F), 0.25F);
  EXPECT_EQ(ClampUnit(1.5F), 1.0F);
  EXPECT_EQ(ClampUnit(-std::numeric_limits<float>::infinity()), 0.0F);
  EXPECT_EQ(ClampUnit(std::numeric_limits<float>::infinity()), 1.0F);
  EXPECT_TRUE(std::isnan(ClampUnit(kQuietNaN)));
}

TEST(FastLog2, StaysWithinItsErrorOverAllMagnitudes) {
  double largest = 0;
  for (float x = std::numeric_limits<float>::min(); x < 1e38F; x *= 1.0007F) {
    const double exact = std::log2(static_cast<double>(x));
    largest = std::max(largest, std::fabs(FastLog2(x) - exact) / std::max(1.0, std::fabs(exact)));
  }
  EXPECT_LT(largest, 2e-7);
  EXPECT_EQ(FastLog2(0.0F), -127.0F);
}

TEST(FastExp2, StaysWithinItsErrorAndSaturates) {
  double largest = 0;
  for (double x = -126.0; x <= 127.0; x += 0.0013) {
    const auto argument = static_cast<float>(x);
    const double exact = std::exp2(static_cast<double>(argument));
    largest = std::max(largest, std::fabs(FastExp2(argument) - exact) / exact);
  }
  EXPECT_LT(largest, 2.5e-7);
  EXPECT_EQ(FastExp2(0.0F), 1.0F);
  EXPECT_LT(FastExp2(-1000.0F), 1.2e-38F);
  EXPECT_LT(FastExp2(kQuietNaN), 1.2e-38F);
  EXPECT_EQ(FastExp2(1000.0F), 0x1p127F);
}

float Power(float value, float exponent) {
  RaiseToPower(&value, 1, [exponent](float) { return exponent; });
  return value;
}

TEST(RaiseToPower, StaysWithinItsErrorForEvery16BitValue) {
  double largest = 0;
  for (const float exponent : {0.1F, 0.37F, 0.5F, 2.0F / 3.0F, 0.99F, 1.01F, 1.5F, 2.0F, 3.3F, 10.0F}) {
    for (int code = 1; code <= 65535; ++code) {
      const float x = static_cast<float>(code) / 65535.0F;
      const double exact = std::pow(static_cast<double>(x), static_cast<double>(exponent));
      largest = std::max(largest, std::fabs(Power(x, exponent) - exact));
    }
  }
  EXPECT_LT(largest, 2e-7);
}

TEST(RaiseToPower, TakesTheExponentOfEachValue) {
  float values[] = {0.25F, 0.5F, 0.75F};
  RaiseToPower(values, 2, [](float value) { return value < 0.3F ? 0.5F : 2.0F; });
  EXPECT_NEAR(values[0], 0.5F, 2e-7);
  EXPECT_NEAR(values[1], 0.25F, 2e-7);
  EXPECT_EQ(values[2], 0.75F);
}

TEST(RaiseToPower, AgreesWithOpenCvAtZero) {
  cv::Mat power(1, 1, CV_32F, cv::Scalar(0));
  cv::pow(power, 0.1, power);
  EXPECT_NEAR(Power(0.0F, 0.1F), power.at<float>(0), 1e-9);
  EXPECT_LT(Power(0.0F, 0.5F), 1e-18F);
}

TEST(RaiseToPower, TakesTheMagnitudeAndKeepsOne) {
  EXPECT_EQ(Power(-0.25F, 0.5F), Power(0.25F, 0.5F));
  EXPECT_EQ(Power(1.0F, 7.3F), 1.0F);
}

}  // namespace
}  // namespace lumvik
