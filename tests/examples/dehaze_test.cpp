// Worked examples of dehaze.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;
using test::SamePixels;
using test::Uniform;

Adjustments DehazeSetting(float dehaze) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.dehaze = dehaze;
  return adjustments;
}

class DehazeExample : public test::StageExample {
 protected:
  // Of gray 0.4 with blocks of other grays, at the last pixel, which is far from all of them.
  float GrayFarFrom(const std::vector<std::pair<cv::Rect, double>>& blocks, cv::Size size) const {
    cv::Mat working = Uniform(size.width, size.height, {0.4F, 0.4F, 0.4F, 1});
    for (const auto& [block, gray] : blocks) working(block).setTo(cv::Scalar(gray, gray, gray, 1));
    return Developed(working, DehazeSetting(50)).at<cv::Vec4f>(size.height - 1, size.width - 1)[0];
  }
};

// What becomes of gray 0.4 at strength 50.
double GrayDehazed(double airlight) {
  return (0.4 - airlight) / (1 - 0.475 * 0.4 / airlight) + airlight;
}

// The erosion of a block of 3 x 3 pixels is its middle. 999 pixels, and all counts below 2000, have one
// brightest value.
TEST_P(DehazeExample, AirlightOfASmallImageIsItsBrightestValue) {
  const std::vector<std::pair<cv::Rect, double>> blocks = {{{1, 1, 3, 3}, 0.9}, {{6, 2, 3, 3}, 0.7}};
  for (const cv::Size size : {cv::Size(27, 37), cv::Size(40, 49)}) {
    EXPECT_NEAR(GrayFarFrom(blocks, size), GrayDehazed(0.9), 1e-5) << size;
  }
  EXPECT_NEAR(GrayFarFrom(blocks, {40, 50}), GrayDehazed(0.8), 1e-5);
}

TEST_P(DehazeExample, AirlightIsTheMeanOfTheBrightestThousandth) {
  const std::vector<std::pair<cv::Rect, double>> blocks = {
      {{1, 1, 3, 3}, 0.9}, {{20, 2, 3, 3}, 0.8}, {{5, 8, 3, 3}, 0.7}, {{10, 3, 3, 3}, 0.6}};
  EXPECT_NEAR(GrayFarFrom(blocks, {60, 50}), GrayDehazed(0.8), 1e-5);
  EXPECT_NEAR(GrayFarFrom({{{30, 40, 7, 4}, 0.9}}, {100, 100}), GrayDehazed(0.9), 1e-5) << "ten pixels";
}

// Dark plane 0.005: with the airlight at its floor the transmission is 1 - 0.475 x 0.5.
TEST_P(DehazeExample, AirlightHasAFloor) {
  const cv::Vec4f pixel = OnePixelDeveloped({0.05F, 0.005F, 0.005F, 1}, DehazeSetting(50));
  EXPECT_NEAR(pixel[0], 0.04 / 0.7625 + 0.01, 1e-6);
}

TEST_P(DehazeExample, OnlyPositiveSettingsAct) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_EQ(OnePixelDeveloped(over, DehazeSetting(0)), over);
  EXPECT_EQ(OnePixelDeveloped(over, DehazeSetting(-50)), over);
}

TEST_P(DehazeExample, InvertsTheHazeModel) {
  // Airlight 0.4, transmission 1 - 0.475.
  const cv::Vec4f pixel = OnePixelDeveloped({0.6F, 0.5F, 0.4F, 0.3F}, DehazeSetting(50));
  EXPECT_NEAR(pixel[0], 0.2 / 0.525 + 0.4, 1e-5);
  EXPECT_NEAR(pixel[1], 0.1 / 0.525 + 0.4, 1e-5);
  EXPECT_NEAR(pixel[2], 0.4, 1e-6);
  EXPECT_EQ(pixel[3], 0.3F);
}

TEST_P(DehazeExample, TheDarkestChannelCountsWhicheverItIs) {
  EXPECT_NEAR(OnePixelDeveloped({0.4F, 0.6F, 0.5F, 1}, DehazeSetting(50))[1], 0.2 / 0.525 + 0.4, 1e-5);
  EXPECT_NEAR(OnePixelDeveloped({0.6F, 0.4F, 0.5F, 1}, DehazeSetting(50))[0], 0.2 / 0.525 + 0.4, 1e-5);
}

TEST_P(DehazeExample, ClampsWhatLeavesTheRange) {
  const cv::Vec4f pixel = OnePixelDeveloped({0.9F, 0.45F, 0.4F, 1}, DehazeSetting(80));
  EXPECT_EQ(pixel[0], 1.0F);
  EXPECT_NEAR(pixel[1], 0.05 / 0.24 + 0.4, 1e-5);
}

// A transmission of 0.05 becomes 0, not 0.1: infinity above the airlight, NaN at it.
TEST_P(DehazeExample, ZeroedTransmissionDrivesColorsToTheEnds) {
  cv::Mat working = Uniform(40, 30, {0.8F, 0.9F, 0.7F, 1});
  working = Developed(working, DehazeSetting(100));
  EXPECT_TRUE(SamePixels(working, Uniform(40, 30, {1, 1, 0, 1})));
}

TEST_P(DehazeExample, BelowTheAirlightAZeroedTransmissionGivesBlack) {
  // A corner sets the airlight to 0.75; elsewhere the transmission is 1 - 0.72 x 0.95 / 0.75 = 0.088.
  cv::Mat working = Uniform(60, 60, {0.72F, 0.72F, 0.72F, 1});
  working(cv::Rect(0, 0, 3, 3)).setTo(cv::Scalar(0.75, 0.75, 0.75, 1));
  working = Developed(working, DehazeSetting(100));
  EXPECT_EQ(working.at<cv::Vec4f>(40, 40), cv::Vec4f(0, 0, 0, 1));
}

TEST_P(DehazeExample, TransmissionIsZeroedUpToItsThreshold) {
  // 1 - 0.95 x 0.9421 is 0.105, 1 - 0.95 x 0.9485 is 0.0989; 0.9469 and 0.9479 are next to the bound.
  EXPECT_NEAR(OnePixelDeveloped({0.45F, 0.4F, 0.4F, 1}, DehazeSetting(94.21F))[0], 0.05 / 0.105 + 0.4, 1e-4);
  EXPECT_EQ(OnePixelDeveloped({0.41F, 0.4F, 0.4F, 1}, DehazeSetting(94.85F))[0], 1.0F);
  EXPECT_NEAR(OnePixelDeveloped({0.41F, 0.4F, 0.4F, 1}, DehazeSetting(94.69F))[0], 0.01 / 0.100445 + 0.4,
              1e-4);
  EXPECT_EQ(OnePixelDeveloped({0.41F, 0.4F, 0.4F, 1}, DehazeSetting(94.79F))[0], 1.0F);
}

// The share that the dark pixels first..last have in the blur at `position` on a line with mirrored ends.
double DarkShare(int position, int first, int last, int length) {
  constexpr int kRadius = 20;
  constexpr double kSigma = 5;
  double dark = 0;
  double all = 0;
  for (int i = position - kRadius; i <= position + kRadius; ++i) {
    const double weight = std::exp(-0.5 * (i - position) * (i - position) / (kSigma * kSigma));
    const int column = cv::borderInterpolate(i, length, cv::BORDER_REFLECT_101);
    all += weight;
    if (first <= column && column <= last) dark += weight;
  }
  return dark / all;
}

// The erosion extends dark pixels by half of its patch, the blur then smooths the transmission: it is
// 1 - 0.475 x 0.2 / 0.6 in the dark and 0.525 elsewhere.
double BrightDehazed(int position, int first, int last, int length) {
  const double transmission = 0.525 + (1 - 0.475 / 3 - 0.525) * DarkShare(position, first, last, length);
  return 0.1 / transmission + 0.6;
}

TEST_P(DehazeExample, TransmissionIsErodedAndSmoothed) {
  constexpr int kRowLength = 91;
  for (const int last_dark : {1, 30}) {
    for (const bool upright : {false, true}) {
      cv::Mat working = Uniform(kRowLength, 1, {0.7F, 0.6F, 0.6F, 1});
      working.colRange(0, last_dark + 1).setTo(cv::Scalar(0.3, 0.2, 0.2, 1));
      if (upright) working = working.t();
      const cv::Mat developed = Developed(working, DehazeSetting(50));
      for (const int position : {last_dark + 1, last_dark + 2, last_dark + 4, last_dark + 9, 60}) {
        EXPECT_NEAR(developed.reshape(0, 1).at<cv::Vec4f>(0, position)[0],
                    BrightDehazed(position, 0, last_dark + 1, kRowLength), 1e-5)
            << last_dark << " " << upright << " " << position;
      }
    }
  }
}

// 2 % of the width, made odd, at least 3.
TEST_P(DehazeExample, PatchGrowsWithTheWidth) {
  for (const auto& [columns, side] :
       {std::pair(91, 3), std::pair(199, 3), std::pair(200, 5), std::pair(299, 5), std::pair(300, 7),
        std::pair(1000, 21), std::pair(1050, 21), std::pair(1100, 23), std::pair(4096, 81)}) {
    cv::Mat working = Uniform(columns, 1, {0.7F, 0.6F, 0.6F, 1});
    const int dark = columns / 2;
    working.at<cv::Vec4f>(0, dark) = {0.3F, 0.2F, 0.2F, 1};
    const cv::Mat developed = Developed(working, DehazeSetting(50));
    for (const int position : {dark - side / 2 - 1, dark + 1, dark + side / 2, dark + side / 2 + 3}) {
      EXPECT_NEAR(developed.at<cv::Vec4f>(0, position)[0],
                  BrightDehazed(position, dark - side / 2, dark + side / 2, columns), 1e-5)
          << columns << " " << position - dark;
    }
  }
}

TEST_P(DehazeExample, ErosionSpreadsTheDark) {
  // A black pixel darkens the 3 x 3 patch around it, and the border outside the frame never wins.
  cv::Mat working = Uniform(3, 3, {0.5F, 0.5F, 0.5F, 1});
  working.at<cv::Vec4f>(0, 0) = {0, 0, 0, 1};
  working = Developed(working, DehazeSetting(50));
  // Where the patch holds bright pixels only, the dark plane is 0.5 = airlight; gray at the airlight stays.
  EXPECT_NEAR(working.at<cv::Vec4f>(2, 2)[0], 0.5, 1e-6);
  EXPECT_LT(working.at<cv::Vec4f>(0, 0)[0], 1e-6);
}

INSTANTIATE_TEST_SUITE_P(Subjects, DehazeExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
