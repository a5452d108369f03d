#include "reference/dehaze.h"

#include <gtest/gtest.h>

#include <cmath>

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
  cv::Mat ten_bright(100, 100, CV_32F, cv::Scalar(0.2));
  ten_bright(cv::Rect(30, 40, 5, 2)).setTo(cv::Scalar(0.9));
  EXPECT_NEAR(Airlight(ten_bright), 0.9, 1e-6);
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

TEST(Dehaze, TheDarkestChannelCountsWhicheverItIs) {
  EXPECT_NEAR(OnPixel(Dehaze, Setting(50), {0.4F, 0.6F, 0.5F, 1})[1], 0.2 / 0.525 + 0.4, 1e-5);
  EXPECT_NEAR(OnPixel(Dehaze, Setting(50), {0.6F, 0.4F, 0.5F, 1})[0], 0.2 / 0.525 + 0.4, 1e-5);
}

TEST(Dehaze, ClampsWhatLeavesTheRange) {
  const cv::Vec4f pixel = OnPixel(Dehaze, Setting(80), {0.9F, 0.45F, 0.4F, 1});
  EXPECT_EQ(pixel[0], 1.0F);
  EXPECT_NEAR(pixel[1], 0.05 / 0.24 + 0.4, 1e-5);
}

// Transmission 0.05 is zeroed, not held at 0.1: above the airlight +inf, at it NaN.
TEST(Dehaze, ZeroedTransmissionDrivesColorsToTheEnds) {
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

TEST(Dehaze, TransmissionIsZeroedUpToItsThreshold) {
  // 1 - 0.95 x 0.9421 is 0.105, 1 - 0.95 x 0.9485 is 0.0989.
  EXPECT_NEAR(OnPixel(Dehaze, Setting(94.21F), {0.45F, 0.4F, 0.4F, 1})[0], 0.05 / 0.105 + 0.4, 1e-4);
  EXPECT_EQ(OnPixel(Dehaze, Setting(94.85F), {0.41F, 0.4F, 0.4F, 1})[0], 1.0F);
}

// Normalized Gaussian weight of the dark pixels 0..last_dark, seen from `place`, on a line whose ends mirror.
double DarkShare(int place, int last_dark) {
  constexpr int kReach = 20;
  constexpr double kSigma = 5;
  double dark = 0;
  double all = 0;
  for (int i = -kReach; i <= kReach; ++i) {
    const double weight = std::exp(-0.5 * i * i / (kSigma * kSigma));
    all += weight;
    if (std::abs(place + i) <= last_dark) dark += weight;
  }
  return dark / all;
}

// A line with a dark beginning. The erosion lengthens the dark by one pixel, the blur then smooths the
// transmission: 1 - 0.475 x 0.2 / 0.6 in the dark, 0.525 in the bright part.
TEST(Dehaze, TransmissionIsErodedAndSmoothed) {
  constexpr int kRowLength = 91;
  for (const int last_dark : {1, 30}) {
    for (const bool upright : {false, true}) {
      cv::Mat working = Uniform(kRowLength, 1, {0.7F, 0.6F, 0.6F, 1});
      working.colRange(0, last_dark + 1).setTo(cv::Scalar(0.3, 0.2, 0.2, 1));
      if (upright) working = working.t();
      Dehaze({}, working, Setting(50));
      for (const int place : {last_dark + 1, last_dark + 2, last_dark + 4, last_dark + 9, 60}) {
        const double transmission = 0.525 + (1 - 0.475 / 3 - 0.525) * DarkShare(place, last_dark + 1);
        EXPECT_NEAR(working.reshape(0, 1).at<cv::Vec4f>(0, place)[0], 0.1 / transmission + 0.6, 1e-5)
            << last_dark << " " << upright << " " << place;
      }
    }
  }
}

TEST(Dehaze, ErosionSpreadsTheDark) {
  // A black pixel darkens the 3 x 3 patch around it, and the border outside the frame never wins.
  cv::Mat working = Uniform(3, 3, {0.5F, 0.5F, 0.5F, 1});
  working.at<cv::Vec4f>(0, 0) = {0, 0, 0, 1};
  Dehaze({}, working, Setting(50));
  // Where only bright pixels were in reach, the dark plane is 0.5 = airlight; gray at the airlight stays.
  EXPECT_NEAR(working.at<cv::Vec4f>(2, 2)[0], 0.5, 1e-6);
  EXPECT_LT(working.at<cv::Vec4f>(0, 0)[0], 1e-6);
}

}  // namespace
}  // namespace lumvik::reference
