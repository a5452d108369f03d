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
