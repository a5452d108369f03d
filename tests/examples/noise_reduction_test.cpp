// Worked examples of noise reduction.
#include <gtest/gtest.h>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;
using test::SamePixels;
using test::Uniform;

Adjustments NoiseSetting(float nr_luminance, float nr_color) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.nr_luminance = nr_luminance;
  adjustments.nr_color = nr_color;
  return adjustments;
}

class NoiseReductionExample : public test::StageExample {
 protected:
  // One differing pixel in a uniform frame, after the stage.
  cv::Mat OnSpot(const Adjustments& adjustments, const cv::Vec4f& base, const cv::Vec4f& spot,
                 cv::Point at = {10, 10}, cv::Size size = {21, 21}) const {
    cv::Mat working = Uniform(size.width, size.height, base);
    working.at<cv::Vec4f>(at) = spot;
    return Developed(working, adjustments);
  }

  // The side of the kernel: the number of columns that a brighter pixel changes.
  int KernelSide(const Adjustments& adjustments) const {
    cv::Mat green;
    cv::extractChannel(OnSpot(adjustments, {0.4F, 0.4F, 0.4F, 1}, {0.8F, 0.8F, 0.8F, 1}), green, 1);
    return cv::countNonZero(green.row(10) > 0.4 + 1e-5);
  }
};

TEST_P(NoiseReductionExample, KernelSizes) {
  EXPECT_EQ(KernelSide(NoiseSetting(100, 0)), 13);
  EXPECT_EQ(KernelSide(NoiseSetting(99.9F, 0)), 11);
  EXPECT_EQ(KernelSide(NoiseSetting(120, 0)), 15);
  EXPECT_EQ(KernelSide(NoiseSetting(50, 0)), 7);
  EXPECT_EQ(KernelSide(NoiseSetting(20, 0)), 5);
  EXPECT_EQ(KernelSide(NoiseSetting(19.9F, 0)), 3);
  EXPECT_EQ(KernelSide(NoiseSetting(0.1F, 0)), 3);
  EXPECT_EQ(KernelSide(NoiseSetting(0, 100)), 11);
  EXPECT_EQ(KernelSide(NoiseSetting(0, 99.9F)), 9);
  EXPECT_EQ(KernelSide(NoiseSetting(0, 125)), 13);
  EXPECT_EQ(KernelSide(NoiseSetting(0, 50)), 7);
  EXPECT_EQ(KernelSide(NoiseSetting(0, 25)), 5);
  EXPECT_EQ(KernelSide(NoiseSetting(0, 24.9F)), 3);
  EXPECT_EQ(KernelSide(NoiseSetting(0, 0.1F)), 3);
}

TEST_P(NoiseReductionExample, LuminanceMixesInTheSmoothedLuminance) {
  // A 3 x 3 kernel weighs its center by 1/4; the mix takes 0.06 of it.
  const cv::Mat working = OnSpot(NoiseSetting(10, 0), {0.4F, 0.4F, 0.4F, 0.7F}, {0.8F, 0.8F, 0.8F, 0.2F});
  const double smooth = 0.4 + 0.4 / 4;
  EXPECT_NEAR(working.at<cv::Vec4f>(10, 10)[0], 0.8 * 0.94 + smooth * 0.06, 2e-6);
  EXPECT_NEAR(working.at<cv::Vec4f>(10, 11)[0], 0.4 * 0.94 + (0.4 + 0.4 / 8) * 0.06, 2e-6);
  EXPECT_NEAR(working.at<cv::Vec4f>(10, 12)[0], 0.4, 2e-6);
  EXPECT_EQ(working.at<cv::Vec4f>(10, 10)[3], 0.2F);
  EXPECT_EQ(working.at<cv::Vec4f>(10, 11)[3], 0.7F);
}

TEST_P(NoiseReductionExample, LuminanceKeepsTheColorRatios) {
  const cv::Vec4f spot(0.9F, 0.6F, 0.3F, 1);
  const cv::Vec4f pixel = OnSpot(NoiseSetting(100, 0), {0.2F, 0.3F, 0.4F, 1}, spot).at<cv::Vec4f>(10, 10);
  EXPECT_LT(pixel[0], 0.8F);
  EXPECT_NEAR(pixel[1] / pixel[0], spot[1] / spot[0], 1e-5);
  EXPECT_NEAR(pixel[2] / pixel[0], spot[2] / spot[0], 1e-5);
}

// The mirrored border does not repeat the edge pixel, so its weight is the same as elsewhere.
TEST_P(NoiseReductionExample, EdgesAreMirrored) {
  const cv::Vec4f base(0.4F, 0.4F, 0.4F, 1);
  const cv::Vec4f spot(0.8F, 0.8F, 0.8F, 1);
  for (const cv::Point corner : {cv::Point(0, 0), cv::Point(20, 20)}) {
    EXPECT_NEAR(OnSpot(NoiseSetting(10, 0), base, spot, corner).at<cv::Vec4f>(corner)[0],
                0.8 * 0.94 + 0.5 * 0.06, 2e-6);
    EXPECT_NEAR(OnSpot(NoiseSetting(0, 10), base, spot, corner).at<cv::Vec4f>(corner)[0], 0.5, 1e-6);
  }
}

TEST_P(NoiseReductionExample, ActsAnywhereInAWideFrame) {
  const cv::Vec4f base(0.4F, 0.4F, 0.4F, 1);
  const cv::Vec4f spot(0.8F, 0.8F, 0.8F, 1);
  for (const cv::Size size : {cv::Size(1300, 5), cv::Size(5, 1300), cv::Size(2049, 3)}) {
    for (const int position : {0, 255, 256, 1023, 1024, 1299}) {
      const cv::Point at = size.width > size.height ? cv::Point(position, 1) : cv::Point(1, position);
      EXPECT_NEAR(OnSpot(NoiseSetting(10, 0), base, spot, at, size).at<cv::Vec4f>(at)[0],
                  0.8 * 0.94 + 0.5 * 0.06, 2e-6)
          << at << size;
      EXPECT_NEAR(OnSpot(NoiseSetting(0, 10), base, spot, at, size).at<cv::Vec4f>(at)[0], 0.5, 1e-6)
          << at << size;
    }
  }
}

TEST_P(NoiseReductionExample, AConstantKeepsBlackFromDividing) {
  // Luminance 1e-6 over 1e-6 + 1e-6: ratio 0.5, 0.4 + 0.6 x 0.5.
  const cv::Vec4f dark(1e-6F, 1e-6F, 1e-6F, 1);
  EXPECT_NEAR(OnePixelDeveloped(dark, NoiseSetting(100, 0))[0], 0.7e-6, 1e-9);
}

TEST_P(NoiseReductionExample, FlatImagesStay) {
  const cv::Mat flat = OnSpot(NoiseSetting(100, 0), {0.5F, 0.4F, 0.3F, 1}, {0.5F, 0.4F, 0.3F, 1});
  EXPECT_LE(cv::norm(flat, Uniform(21, 21, {0.5F, 0.4F, 0.3F, 1}), cv::NORM_INF), 3e-6);
  const cv::Mat black = OnSpot(NoiseSetting(100, 0), {0, 0, 0, 1}, {0, 0, 0, 1});
  EXPECT_TRUE(SamePixels(black, Uniform(21, 21, {0, 0, 0, 1})));
}

TEST_P(NoiseReductionExample, LuminanceDoesNotClamp) {
  // A pale blue pixel of low luminance amid white is scaled far beyond 1.
  const cv::Vec4f pixel = OnSpot(NoiseSetting(100, 0), {1, 1, 1, 1}, {0, 0, 0.9F, 1}).at<cv::Vec4f>(10, 10);
  EXPECT_GT(pixel[2], 1.5F);
}

TEST_P(NoiseReductionExample, ColorBlursEachPlane) {
  const cv::Mat working = OnSpot(NoiseSetting(0, 10), {0.4F, 0.4F, 0.4F, 0.7F}, {0.8F, 0.6F, 0.4F, 0.2F});
  const cv::Vec4f center = working.at<cv::Vec4f>(10, 10);
  EXPECT_NEAR(center[0], 0.4 + 0.4 / 4, 1e-6);
  EXPECT_NEAR(center[1], 0.4 + 0.2 / 4, 1e-6);
  EXPECT_NEAR(center[2], 0.4, 1e-6);
  EXPECT_EQ(center[3], 0.2F) << "alpha is not blurred";
  EXPECT_NEAR(working.at<cv::Vec4f>(11, 11)[0], 0.4 + 0.4 / 16, 1e-6);
  EXPECT_EQ(working.at<cv::Vec4f>(11, 11)[3], 0.7F);
}

TEST_P(NoiseReductionExample, NegativeSettingsChangeNothing) {
  const cv::Vec4f base(0.4F, 1.5F, -0.4F, 0.7F);
  const cv::Vec4f spot(0.8F, 0.6F, 0.4F, 0.2F);
  const cv::Mat untouched = OnSpot(NoiseSetting(0, 0), base, spot);
  for (const Adjustments& adjustments :
       {NoiseSetting(-50, 0), NoiseSetting(0, -50), NoiseSetting(-50, -50)}) {
    EXPECT_TRUE(SamePixels(OnSpot(adjustments, base, spot), untouched));
  }
  EXPECT_TRUE(SamePixels(OnSpot(NoiseSetting(-50, 30), base, spot), OnSpot(NoiseSetting(0, 30), base, spot)));
  EXPECT_FALSE(SamePixels(OnSpot(NoiseSetting(0, 30), base, spot), untouched));
}

INSTANTIATE_TEST_SUITE_P(Subjects, NoiseReductionExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
