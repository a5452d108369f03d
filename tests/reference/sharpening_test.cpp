#include "reference/sharpening.h"

#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "reference/pixel.h"

namespace lumvik::reference {
namespace {

constexpr int kColumns = 33;
constexpr int kStepColumn = 16;
constexpr float kLow = 0.4F;
constexpr float kHigh = 0.6F;

Adjustments Setting(float amount, float radius, float threshold) {
  Adjustments adjustments;
  adjustments.sharpening_amount = amount;
  adjustments.sharpening_radius = radius;
  adjustments.sharpening_threshold = threshold;
  return adjustments;
}

// A step from dark to bright gray along a row.
cv::Mat Step() {
  cv::Mat working = Uniform(kColumns, 1, {kLow, kLow, kLow, 0.7F});
  working.colRange(kStepColumn, kColumns).setTo(cv::Scalar(kHigh, kHigh, kHigh, 0.7));
  return working;
}

cv::Mat Sharpened(const Adjustments& adjustments) {
  cv::Mat working = Step();
  Sharpening({}, working, adjustments);
  return working;
}

float Red(const cv::Mat& working, int column) {
  return working.at<cv::Vec4f>(0, column)[0];
}

// What a Gaussian of this sigma takes from the first bright column of the step.
double StepDetail(double sigma) {
  double dark = 0;
  double all = 0;
  for (int i = -12; i <= 12; ++i) {
    const double weight = std::exp(-0.5 * i * i / (sigma * sigma));
    all += weight;
    if (i > 0) dark += weight;
  }
  return (static_cast<double>(kHigh) - static_cast<double>(kLow)) * dark / all;
}

TEST(Sharpening, AmountScalesTheDetail) {
  const double detail = StepDetail(1);
  EXPECT_NEAR(Red(Sharpened(Setting(150, 1, 0)), kStepColumn), kHigh + detail, 2e-5);
  EXPECT_NEAR(Red(Sharpened(Setting(75, 1, 0)), kStepColumn), kHigh + detail / 2, 2e-5);
  EXPECT_NEAR(Red(Sharpened(Setting(150, 1, 0)), kStepColumn - 1), kLow - detail, 2e-5);
}

TEST(Sharpening, RadiusIsTheSigma) {
  EXPECT_NEAR(Red(Sharpened(Setting(150, 2.5F, 0)), kStepColumn), kHigh + StepDetail(2.5), 5e-5);
}

// A lone pixel loses the same share to the blur in either direction, and at the edge, where the mirror does
// not count it twice.
TEST(Sharpening, SameDetailInEveryDirectionAndAtTheEdge) {
  double all = 0;
  for (int i = -4; i <= 4; ++i) all += std::exp(-0.5 * i * i);
  const double expected = 0.6 + 0.1 * (1 - 1 / all);
  for (const int place : {kStepColumn, 0, kColumns - 1}) {
    for (const bool upright : {false, true}) {
      cv::Mat working = Uniform(kColumns, 1, {0.5F, 0.5F, 0.5F, 1});
      working.at<cv::Vec4f>(0, place)[0] = 0.6F;
      if (upright) working = working.t();
      Sharpening({}, working, Setting(150, 1, 0));
      EXPECT_NEAR(working.reshape(0, 1).at<cv::Vec4f>(0, place)[0], expected, 1e-5) << place << upright;
    }
  }
}

TEST(Sharpening, EveryColorPlaneOnItsOwn) {
  cv::Mat working = Uniform(kColumns, 1, {0.5F, 0.5F, 0.5F, 1});
  working.at<cv::Vec4f>(0, kStepColumn)[1] = 0.6F;
  Sharpening({}, working, Setting(150, 1, 0));
  const cv::Vec4f pixel = working.at<cv::Vec4f>(0, kStepColumn);
  EXPECT_NEAR(pixel[0], 0.5, 1e-6);
  EXPECT_GT(pixel[1], 0.65F);
  EXPECT_NEAR(pixel[2], 0.5, 1e-6);
}

TEST(Sharpening, DetailUpToTheThresholdIsLeftAlone) {
  const auto code = static_cast<float>(StepDetail(1) * 65535);
  EXPECT_EQ(Red(Sharpened(Setting(150, 1, code + 10)), kStepColumn), kHigh);
  EXPECT_GT(Red(Sharpened(Setting(150, 1, code - 10)), kStepColumn), kHigh + 0.05F);
}

TEST(Sharpening, DetailExactlyAtTheThresholdIsNotSharpened) {
  cv::Mat plane;
  cv::extractChannel(Step(), plane, 0);
  cv::Mat blurred;
  cv::GaussianBlur(plane, blurred, cv::Size(0, 0), 1, 0, cv::BORDER_REFLECT_101);
  // A column whose detail is one of the values that a threshold setting can take, and that setting.
  int found = 0;
  for (int column = 0; column < kColumns; ++column) {
    const float detail = std::fabs(plane.at<float>(0, column) - blurred.at<float>(0, column));
    float code = detail * 65535.0F;
    if (code < 10.0F) continue;
    code = std::nextafter(std::nextafter(code, 0.0F), 0.0F);
    for (int i = 0; i < 5 && code / 65535.0F != detail; ++i) code = std::nextafter(code, 1e6F);
    if (code / 65535.0F != detail) continue;
    ++found;
    EXPECT_EQ(Red(Sharpened(Setting(150, 1, code)), column), plane.at<float>(0, column));
    EXPECT_NE(Red(Sharpened(Setting(150, 1, code * 0.9999F)), column), plane.at<float>(0, column));
  }
  EXPECT_GT(found, 0);
}

TEST(Sharpening, FullThresholdDisables) {
  EXPECT_TRUE(SamePixels(Sharpened(Setting(150, 1, 65535)), Step()));
}

TEST(Sharpening, ClampsEveryColorValue) {
  const cv::Vec4f pixel = OnPixel(Sharpening, Setting(1, 1, 0), {1.5F, -0.5F, 0.5F, 1.5F});
  EXPECT_EQ(pixel[0], 1.0F);
  EXPECT_EQ(pixel[1], 0.0F);
  EXPECT_NEAR(pixel[2], 0.5, 1e-6);
  EXPECT_EQ(pixel[3], 1.5F);
}

TEST(Sharpening, OnlyPositiveAmountsAct) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_EQ(OnPixel(Sharpening, Setting(0, 1, 0), over), over);
  EXPECT_EQ(OnPixel(Sharpening, Setting(-20, 0, 0), over), over);
}

TEST(Sharpening, RadiusMustBePositive) {
  EXPECT_THROW(Sharpened(Setting(50, 0, 0)), cv::Exception);
  EXPECT_THROW(Sharpened(Setting(50, -1, 0)), cv::Exception);
}

}  // namespace
}  // namespace lumvik::reference
