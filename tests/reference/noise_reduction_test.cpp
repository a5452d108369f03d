#include "reference/noise_reduction.h"

#include <gtest/gtest.h>

#include "reference/pixel.h"

namespace lumvik::reference {
namespace {

Adjustments Setting(float nr_luminance, float nr_color) {
  Adjustments adjustments;
  adjustments.nr_luminance = nr_luminance;
  adjustments.nr_color = nr_color;
  return adjustments;
}

// One differing pixel in a uniform frame, after the stage.
cv::Mat OnSpot(const Adjustments& adjustments, const cv::Vec4f& base, const cv::Vec4f& spot,
               cv::Point place = {10, 10}) {
  cv::Mat working = Uniform(21, 21, base);
  working.at<cv::Vec4f>(place) = spot;
  NoiseReduction({}, working, adjustments);
  return working;
}

TEST(NoiseReduction, KernelSizes) {
  EXPECT_EQ(LuminanceKernelSize(100), 13);
  EXPECT_EQ(LuminanceKernelSize(50), 7);
  EXPECT_EQ(LuminanceKernelSize(20), 5);
  EXPECT_EQ(LuminanceKernelSize(19.9F), 3);
  EXPECT_EQ(LuminanceKernelSize(0.1F), 3);
  EXPECT_EQ(ColorKernelSize(100), 11);
  EXPECT_EQ(ColorKernelSize(50), 7);
  EXPECT_EQ(ColorKernelSize(25), 5);
  EXPECT_EQ(ColorKernelSize(24.9F), 3);
  EXPECT_EQ(ColorKernelSize(0.1F), 3);
}

TEST(NoiseReduction, LuminanceMixesInTheSmoothedLuminance) {
  // A 3 x 3 kernel weighs its center by 1/4; the mix takes 0.06 of it.
  const cv::Mat working = OnSpot(Setting(10, 0), {0.4F, 0.4F, 0.4F, 0.7F}, {0.8F, 0.8F, 0.8F, 0.2F});
  const double smooth = 0.4 + 0.4 / 4;
  EXPECT_NEAR(working.at<cv::Vec4f>(10, 10)[0], 0.8 * 0.94 + smooth * 0.06, 2e-6);
  EXPECT_NEAR(working.at<cv::Vec4f>(10, 11)[0], 0.4 * 0.94 + (0.4 + 0.4 / 8) * 0.06, 2e-6);
  EXPECT_NEAR(working.at<cv::Vec4f>(10, 12)[0], 0.4, 2e-6);
  EXPECT_EQ(working.at<cv::Vec4f>(10, 10)[3], 0.2F);
  EXPECT_EQ(working.at<cv::Vec4f>(10, 11)[3], 0.7F);
}

TEST(NoiseReduction, LuminanceKeepsTheColorRatios) {
  const cv::Vec4f spot(0.9F, 0.6F, 0.3F, 1);
  const cv::Vec4f pixel = OnSpot(Setting(100, 0), {0.2F, 0.3F, 0.4F, 1}, spot).at<cv::Vec4f>(10, 10);
  EXPECT_LT(pixel[0], 0.8F);
  EXPECT_NEAR(pixel[1] / pixel[0], spot[1] / spot[0], 1e-5);
  EXPECT_NEAR(pixel[2] / pixel[0], spot[2] / spot[0], 1e-5);
}

// The mirror does not count the edge pixel twice, so its own weight is the same as elsewhere.
TEST(NoiseReduction, EdgesAreMirrored) {
  const cv::Vec4f base(0.4F, 0.4F, 0.4F, 1);
  const cv::Vec4f spot(0.8F, 0.8F, 0.8F, 1);
  for (const cv::Point corner : {cv::Point(0, 0), cv::Point(20, 20)}) {
    EXPECT_NEAR(OnSpot(Setting(10, 0), base, spot, corner).at<cv::Vec4f>(corner)[0], 0.8 * 0.94 + 0.5 * 0.06,
                2e-6);
    EXPECT_NEAR(OnSpot(Setting(0, 10), base, spot, corner).at<cv::Vec4f>(corner)[0], 0.5, 1e-6);
  }
}

TEST(NoiseReduction, AConstantKeepsBlackFromDividing) {
  // Luminance 1e-6 over 1e-6 + 1e-6: ratio 0.5, 0.4 + 0.6 x 0.5.
  const cv::Vec4f dark(1e-6F, 1e-6F, 1e-6F, 1);
  EXPECT_NEAR(OnPixel(NoiseReduction, Setting(100, 0), dark)[0], 0.7e-6, 1e-9);
}

TEST(NoiseReduction, FlatImagesStay) {
  const cv::Mat flat = OnSpot(Setting(100, 0), {0.5F, 0.4F, 0.3F, 1}, {0.5F, 0.4F, 0.3F, 1});
  EXPECT_LE(cv::norm(flat, Uniform(21, 21, {0.5F, 0.4F, 0.3F, 1}), cv::NORM_INF), 3e-6);
  const cv::Mat black = OnSpot(Setting(100, 0), {0, 0, 0, 1}, {0, 0, 0, 1});
  EXPECT_TRUE(SamePixels(black, Uniform(21, 21, {0, 0, 0, 1})));
}

TEST(NoiseReduction, LuminanceDoesNotClamp) {
  // A pale blue pixel of low luminance amid white is scaled far beyond 1.
  const cv::Vec4f pixel = OnSpot(Setting(100, 0), {1, 1, 1, 1}, {0, 0, 0.9F, 1}).at<cv::Vec4f>(10, 10);
  EXPECT_GT(pixel[2], 1.5F);
}

TEST(NoiseReduction, ColorBlursEachPlane) {
  const cv::Mat working = OnSpot(Setting(0, 10), {0.4F, 0.4F, 0.4F, 0.7F}, {0.8F, 0.6F, 0.4F, 0.2F});
  const cv::Vec4f center = working.at<cv::Vec4f>(10, 10);
  EXPECT_NEAR(center[0], 0.4 + 0.4 / 4, 1e-6);
  EXPECT_NEAR(center[1], 0.4 + 0.2 / 4, 1e-6);
  EXPECT_NEAR(center[2], 0.4, 1e-6);
  EXPECT_EQ(center[3], 0.2F) << "alpha is not blurred";
  EXPECT_NEAR(working.at<cv::Vec4f>(11, 11)[0], 0.4 + 0.4 / 16, 1e-6);
  EXPECT_EQ(working.at<cv::Vec4f>(11, 11)[3], 0.7F);
}

TEST(NoiseReduction, NegativeSettingsChangeNothing) {
  const cv::Vec4f base(0.4F, 1.5F, -0.4F, 0.7F);
  const cv::Vec4f spot(0.8F, 0.6F, 0.4F, 0.2F);
  const cv::Mat untouched = OnSpot(Setting(0, 0), base, spot);
  for (const Adjustments& adjustments : {Setting(-50, 0), Setting(0, -50), Setting(-50, -50)}) {
    EXPECT_TRUE(SamePixels(OnSpot(adjustments, base, spot), untouched));
  }
  EXPECT_TRUE(SamePixels(OnSpot(Setting(-50, 30), base, spot), OnSpot(Setting(0, 30), base, spot)));
  EXPECT_FALSE(SamePixels(OnSpot(Setting(0, 30), base, spot), untouched));
}

}  // namespace
}  // namespace lumvik::reference
