#include "pipeline/stages/exposure.h"

#include <gtest/gtest.h>

#include "pipeline/packed_rows.h"
#include "pipeline/row_steps.h"
#include "reference/exposure.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

cv::Vec4f Exposed(const cv::Vec4f& pixel, float exposure) {
  cv::Mat image(1, 1, CV_32FC4, cv::Scalar(pixel));
  RunRowSteps(RowsOf(image), {Exposure(exposure)}, StoreIn(image));
  return image.at<cv::Vec4f>(0, 0);
}

TEST(Exposure, DoublesBelowTheKnee) {
  EXPECT_EQ(Exposed({0.3F, 0.1F, 0.0F, 1.0F}, 1), cv::Vec4f(0.6F, 0.2F, 0.0F, 1.0F));
}

TEST(Exposure, RollsOffBeyondTheKnee) {
  EXPECT_EQ(Exposed({0.5F, 0.5F, 0.5F, 1.0F}, 1), cv::Vec4f(0.875F, 0.875F, 0.875F, 1.0F));
  const cv::Vec4f red = Exposed({1.0F, 0.0F, 0.0F, 0.5F}, 1);
  EXPECT_NEAR(red[0], 0.9583F, 5e-5F);
  EXPECT_NEAR(red[1], 0.4356F, 5e-5F);
  EXPECT_EQ(red[1], red[2]);
  EXPECT_EQ(red[3], 0.5F);
}

TEST(Exposure, HalvesAndFloorsNegativeValues) {
  EXPECT_EQ(Exposed({1.0F, -0.5F, 0.5F, 1.0F}, -1), cv::Vec4f(0.5F, 0.0F, 0.25F, 1.0F));
}

TEST(Exposure, EqualsTheReferenceOverItsRange) {
  for (const float exposure : {-130.0F, -20.0F, -5.0F, -1.0F, -0.01F, 0.01F, 0.5F, 1.0F, 2.5F, 5.0F, 20.0F}) {
    for (const cv::Size size : test::OddSizes()) {
      cv::Mat expected;
      test::NoiseImage(size, 11).convertTo(expected, CV_32FC4, 1.4 / 65535, -0.2);
      cv::Mat actual = expected.clone();
      reference::Exposure(expected, exposure);
      RunRowSteps(RowsOf(actual), {Exposure(exposure)}, StoreIn(actual));
      EXPECT_TRUE(test::SameBytes(actual, expected)) << exposure << " stops at " << size;
    }
  }
}

}  // namespace
}  // namespace lumvik
