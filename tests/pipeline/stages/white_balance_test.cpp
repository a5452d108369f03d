#include "pipeline/stages/white_balance.h"

#include <gtest/gtest.h>

#include <limits>

#include "pipeline/packed_rows.h"
#include "pipeline/row_steps.h"
#include "reference/white_balance.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using test::NoiseImage;
using test::SameBytes;

cv::Mat NoiseBeyondUnit(cv::Size size) {
  cv::Mat working;
  NoiseImage(size, 3).convertTo(working, CV_32FC4, 1.4 / 65535, -0.2);  // with values beyond 0..1
  return working;
}

TEST(WhiteBalanceGains, MatchKnownTemperatures) {
  struct Known {
    float temperature, red, blue;
    float tolerance;
  };
  // The last digit given decides the tolerance.
  for (const Known& known : {Known{3000, 0.0089F, 2.5374F, 5.1e-5F}, Known{5500, 1.144F, 1.133F, 5.1e-4F},
                             Known{6500, 1.27F, 0.9587F, 5.1e-4F}, Known{6504, 1.2704F, 0.9581F, 5.1e-5F},
                             Known{7500, 1.3354F, 0.8445F, 5.1e-5F}, Known{10000, 1.3918F, 0.6834F, 5.1e-5F},
                             Known{25000, 1.3661F, 0.4717F, 5.1e-5F}}) {
    const WhiteBalanceGains gains = ComputeWhiteBalanceGains(known.temperature, 0);
    EXPECT_NEAR(gains.red, known.red, known.tolerance) << known.temperature;
    EXPECT_NEAR(gains.blue, known.blue, known.tolerance) << known.temperature;
    EXPECT_EQ(gains.green, 1.0F);
  }
}

TEST(WhiteBalanceGains, HoldTheTemperatureToTheLocus) {
  for (const auto& [outside, bound] : {std::pair{100.0F, 1667.0F}, std::pair{-5.0F, 1667.0F},
                                       std::pair{25001.0F, 25000.0F}, std::pair{1e9F, 25000.0F}}) {
    EXPECT_EQ(ComputeWhiteBalanceGains(outside, 0).red, ComputeWhiteBalanceGains(bound, 0).red);
    EXPECT_EQ(ComputeWhiteBalanceGains(outside, 0).blue, ComputeWhiteBalanceGains(bound, 0).blue);
  }
}

TEST(WhiteBalanceGains, TintMovesGreenAlone) {
  EXPECT_FLOAT_EQ(ComputeWhiteBalanceGains(6504, 150).green, 0.85F);
  EXPECT_FLOAT_EQ(ComputeWhiteBalanceGains(6504, -150).green, 1.15F);
  EXPECT_NEAR(ComputeWhiteBalanceGains(6504, 1000).green, 0.0F, 1e-6F);
  EXPECT_EQ(ComputeWhiteBalanceGains(6504, 80).red, ComputeWhiteBalanceGains(6504, 0).red);
}

TEST(WhiteBalance, ClampsEveryColorAndKeepsAlpha) {
  cv::Mat pixel(1, 1, CV_32FC4, cv::Scalar(2.0, 1.5, -0.5, 0.3));
  RunRowSteps(RowsOf(pixel), {WhiteBalance(5500, 0)}, StoreIn(pixel));
  EXPECT_EQ(pixel.at<cv::Vec4f>(0, 0), cv::Vec4f(1.0F, 1.0F, 0.0F, 0.3F));
}

TEST(WhiteBalance, EqualsTheReferenceOverItsRange) {
  for (const float temperature : {-1.0F, 1667.0F, 2222.0F, 2500.0F, 4000.0F, 4001.0F, 5500.0F, 6500.0F,
                                  6504.0F, 12000.0F, 25000.0F, 1e7F}) {
    for (const float tint : {-1e6F, -150.0F, 0.0F, 33.0F, 150.0F, 1000.0F}) {
      cv::Mat expected = NoiseBeyondUnit({67, 13});
      cv::Mat actual = expected.clone();
      reference::WhiteBalance(expected, temperature, tint);
      RunRowSteps(RowsOf(actual), {WhiteBalance(temperature, tint)}, StoreIn(actual));
      EXPECT_TRUE(SameBytes(actual, expected)) << temperature << " K, tint " << tint;
    }
  }
}

TEST(WhiteBalance, ANaNTintBlackensGreen) {
  cv::Mat pixel(1, 1, CV_16UC4, cv::Scalar(30000, 30000, 30000, 65535));
  RunRowSteps(RowsOf(pixel), {WhiteBalance(6504, std::numeric_limits<float>::quiet_NaN())}, StoreIn(pixel));
  EXPECT_EQ(pixel.at<cv::Vec4w>(0, 0)[1], 0);
  EXPECT_GT(pixel.at<cv::Vec4w>(0, 0)[0], 0);
}

}  // namespace
}  // namespace lumvik
