#include "reference/dehaze.h"

#include <gtest/gtest.h>

#include "reference/pixel.h"

namespace lumvik::reference {
namespace {

Adjustments Setting(float dehaze) {
  Adjustments adjustments;
  adjustments.dehaze = dehaze;
  return adjustments;
}

TEST(Dehaze, PatchGrowsWithTheWidth) {
  EXPECT_EQ(DehazePatchSize(1), 3);
  EXPECT_EQ(DehazePatchSize(199), 3);
  EXPECT_EQ(DehazePatchSize(200), 5);
  EXPECT_EQ(DehazePatchSize(1000), 21);
  EXPECT_EQ(DehazePatchSize(1050), 21);
  EXPECT_EQ(DehazePatchSize(4096), 81);
}

TEST(Dehaze, AirlightOfASmallImageIsItsBrightestValue) {
  cv::Mat plane(27, 37, CV_32F, cv::Scalar(0.2));  // 999 pixels
  plane.at<float>(5, 5) = 0.9F;
  plane.at<float>(6, 30) = 0.8F;
  EXPECT_EQ(Airlight(plane), 0.9F);
}

TEST(Dehaze, AirlightIsTheMeanOfTheBrightestThousandth) {
  cv::Mat plane(50, 60, CV_32F, cv::Scalar(0.2));
  plane.at<float>(5, 5) = 0.9F;
  plane.at<float>(6, 30) = 0.8F;
  plane.at<float>(49, 59) = 0.7F;
  plane.at<float>(0, 0) = 0.6F;
  EXPECT_NEAR(Airlight(plane), 0.8, 1e-6);
  EXPECT_EQ(Airlight(cv::Mat::zeros(50, 60, CV_32F)), 0.01F);
}

TEST(Dehaze, OnlyPositiveSettingsAct) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_EQ(OnPixel(Dehaze, Setting(0), over), over);
  EXPECT_EQ(OnPixel(Dehaze, Setting(-50), over), over);
}

TEST(Dehaze, InvertsTheHazeModel) {
  // Airlight 0.4, transmission 1 - 0.475.
  const cv::Vec4f pixel = OnPixel(Dehaze, Setting(50), {0.6F, 0.5F, 0.4F, 0.3F});
  EXPECT_NEAR(pixel[0], 0.2 / 0.525 + 0.4, 1e-5);
  EXPECT_NEAR(pixel[1], 0.1 / 0.525 + 0.4, 1e-5);
  EXPECT_NEAR(pixel[2], 0.4, 1e-6);
  EXPECT_EQ(pixel[3], 0.3F);
}

TEST(Dehaze, ClampsWhatLeavesTheRange) {
  const cv::Vec4f pixel = OnPixel(Dehaze, Setting(80), {0.9F, 0.45F, 0.4F, 1});
  EXPECT_EQ(pixel[0], 1.0F);
  EXPECT_NEAR(pixel[1], 0.05 / 0.24 + 0.4, 1e-5);
}

// Transmission 0.05 is zeroed, not held at 0.1: above the airlight +inf, at it NaN.
TEST(Dehaze, ZeroedTransmissionDrivesColoursToTheEnds) {
  cv::Mat working = Uniform(40, 30, {0.8F, 0.9F, 0.7F, 1});
  Dehaze({}, working, Setting(100));
  EXPECT_TRUE(SamePixels(working, Uniform(40, 30, {1, 1, 0, 1})));
}

TEST(Dehaze, BelowTheAirlightAZeroedTransmissionGivesBlack) {
  // A corner sets the airlight to 0.75; elsewhere the transmission is 1 - 0.72 x 0.95 / 0.75 = 0.088.
  cv::Mat working = Uniform(60, 60, {0.72F, 0.72F, 0.72F, 1});
  working(cv::Rect(0, 0, 3, 3)).setTo(cv::Scalar(0.75, 0.75, 0.75, 1));
  Dehaze({}, working, Setting(100));
  EXPECT_EQ(working.at<cv::Vec4f>(40, 40), cv::Vec4f(0, 0, 0, 1));
}

TEST(Dehaze, ErosionSpreadsTheDark) {
  // A black pixel darkens the 3 x 3 patch around it, and the border outside the frame never wins.
  cv::Mat working = Uniform(3, 3, {0.5F, 0.5F, 0.5F, 1});
  working.at<cv::Vec4f>(0, 0) = {0, 0, 0, 1};
  Dehaze({}, working, Setting(50));
  // Where only bright pixels were in reach, the dark plane is 0.5 = airlight; grey at the airlight stays.
  EXPECT_NEAR(working.at<cv::Vec4f>(2, 2)[0], 0.5, 1e-6);
  EXPECT_LT(working.at<cv::Vec4f>(0, 0)[0], 1e-6);
}

}  // namespace
}  // namespace lumvik::reference
