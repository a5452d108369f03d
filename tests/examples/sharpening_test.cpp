// Worked examples of sharpening.
#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;
using test::SamePixels;
using test::Uniform;

constexpr int kColumns = 33;
constexpr int kStepColumn = 16;
constexpr float kLow = 0.4F;
constexpr float kHigh = 0.6F;

Adjustments SharpeningSetting(float amount, float radius, float threshold) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.sharpening_amount = amount;
  adjustments.sharpening_radius = radius;
  adjustments.sharpening_threshold = threshold;
  return adjustments;
}

// A step from dark to bright gray along a row.
cv::Mat Step(int columns = kColumns, int step_column = kStepColumn) {
  cv::Mat working = Uniform(columns, 1, {kLow, kLow, kLow, 0.7F});
  working.colRange(step_column, columns).setTo(cv::Scalar(kHigh, kHigh, kHigh, 0.7));
  return working;
}

float Red(const cv::Mat& working, int column) {
  return working.at<cv::Vec4f>(0, column)[0];
}

// What a Gaussian of this sigma takes from the first bright column of the step.
double StepDetail(double sigma) {
  double dark = 0;
  double all = 0;
  const int radius = static_cast<int>(sigma * 5);
  for (int i = -radius; i <= radius; ++i) {
    const double weight = std::exp(-0.5 * i * i / (sigma * sigma));
    all += weight;
    if (i > 0) dark += weight;
  }
  return (static_cast<double>(kHigh) - static_cast<double>(kLow)) * dark / all;
}

class SharpeningExample : public test::StageExample {
 protected:
  cv::Mat Sharpened(const Adjustments& adjustments, const cv::Mat& working = Step()) const {
    return Developed(working, adjustments);
  }
};

TEST_P(SharpeningExample, AmountScalesTheDetail) {
  const double detail = StepDetail(1);
  EXPECT_NEAR(Red(Sharpened(SharpeningSetting(150, 1, 0)), kStepColumn), kHigh + detail, 2e-5);
  EXPECT_NEAR(Red(Sharpened(SharpeningSetting(75, 1, 0)), kStepColumn), kHigh + detail / 2, 2e-5);
  EXPECT_NEAR(Red(Sharpened(SharpeningSetting(150, 1, 0)), kStepColumn - 1), kLow - detail, 2e-5);
}

TEST_P(SharpeningExample, RadiusIsTheSigma) {
  EXPECT_NEAR(Red(Sharpened(SharpeningSetting(150, 2.5F, 0)), kStepColumn), kHigh + StepDetail(2.5), 5e-5);
  for (const float sigma : {0.5F, 7.9F, 8.0F, 15.9F, 16.0F, 17.0F, 40.0F}) {
    for (const int step_column : {300, 1024}) {
      const cv::Mat sharpened = Sharpened(SharpeningSetting(150, sigma, 0), Step(1400, step_column));
      const double detail = StepDetail(static_cast<double>(sigma));
      EXPECT_NEAR(Red(sharpened, step_column), kHigh + detail, 5e-5) << sigma;
      EXPECT_NEAR(Red(sharpened, step_column - 1), kLow - detail, 5e-5) << sigma;
    }
  }
}

// A single pixel loses the same share to the blur in either direction, and at the edge, which the mirrored
// border does not repeat.
TEST_P(SharpeningExample, SameDetailInEveryDirectionAndAtTheEdge) {
  constexpr int kWideRow = 1300;
  double all = 0;
  for (int i = -4; i <= 4; ++i) all += std::exp(-0.5 * i * i);
  const double expected = 0.6 + 0.1 * (1 - 1 / all);
  for (const int position : {0, 16, 255, 256, 1023, 1024, kWideRow - 1}) {
    for (const bool upright : {false, true}) {
      cv::Mat working = Uniform(kWideRow, 1, {0.5F, 0.5F, 0.5F, 1});
      working.at<cv::Vec4f>(0, position)[0] = 0.6F;
      if (upright) working = working.t();
      const cv::Mat sharpened = Sharpened(SharpeningSetting(150, 1, 0), working);
      EXPECT_NEAR(sharpened.reshape(0, 1).at<cv::Vec4f>(0, position)[0], expected, 1e-5)
          << position << upright;
    }
  }
}

TEST_P(SharpeningExample, EveryColorPlaneOnItsOwn) {
  cv::Mat working = Uniform(kColumns, 1, {0.5F, 0.5F, 0.5F, 1});
  working.at<cv::Vec4f>(0, kStepColumn)[1] = 0.6F;
  const cv::Vec4f pixel = Sharpened(SharpeningSetting(150, 1, 0), working).at<cv::Vec4f>(0, kStepColumn);
  EXPECT_NEAR(pixel[0], 0.5, 1e-6);
  EXPECT_GT(pixel[1], 0.65F);
  EXPECT_NEAR(pixel[2], 0.5, 1e-6);
}

TEST_P(SharpeningExample, DetailUpToTheThresholdIsLeftAlone) {
  const auto code = static_cast<float>(StepDetail(1) * 65535);
  EXPECT_EQ(Red(Sharpened(SharpeningSetting(150, 1, code + 10)), kStepColumn), kHigh);
  EXPECT_GT(Red(Sharpened(SharpeningSetting(150, 1, code - 10)), kStepColumn), kHigh + 0.05F);
}

// The blur of a single pixel on black is one product, which any order of summation gives exactly. Only some
// of these details are the quotient of a threshold and 65535.
TEST_P(SharpeningExample, DetailExactlyAtTheThresholdIsNotSharpened) {
  int found = 0;
  for (int level = 1; level <= 50; ++level) {
    const float value = static_cast<float>(level) / 100.0F;
    cv::Mat plane = cv::Mat::zeros(15, 15, CV_32F);
    plane.at<float>(7, 7) = value;
    cv::Mat blurred;
    cv::GaussianBlur(plane, blurred, cv::Size(), 1);
    const float detail = value - blurred.at<float>(7, 7);
    const float code = detail * 65535.0F;
    if (code / 65535.0F != detail) continue;
    ++found;
    cv::Mat working;
    cv::merge(std::vector<cv::Mat>(4, plane), working);
    const auto sharpened = [&](float threshold) {
      return Sharpened(SharpeningSetting(150, 1, threshold), working).at<cv::Vec4f>(7, 7)[0];
    };
    EXPECT_EQ(sharpened(code), value);
    EXPECT_EQ(sharpened(code * 0.99999F), value + detail);
  }
  EXPECT_GT(found, 10);
}

TEST_P(SharpeningExample, FullThresholdDisables) {
  EXPECT_TRUE(SamePixels(Sharpened(SharpeningSetting(150, 1, 65535)), Step()));
}

TEST_P(SharpeningExample, ClampsEveryColorValue) {
  const cv::Vec4f pixel = OnePixelDeveloped({1.5F, -0.5F, 0.5F, 1.5F}, SharpeningSetting(1, 1, 0));
  EXPECT_EQ(pixel[0], 1.0F);
  EXPECT_EQ(pixel[1], 0.0F);
  EXPECT_NEAR(pixel[2], 0.5, 1e-6);
  EXPECT_EQ(pixel[3], 1.5F);
}

TEST_P(SharpeningExample, OnlyPositiveAmountsAct) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_EQ(OnePixelDeveloped(over, SharpeningSetting(0, 1, 0)), over);
  EXPECT_EQ(OnePixelDeveloped(over, SharpeningSetting(-20, 0, 0)), over);
}

TEST_P(SharpeningExample, RadiusMustBePositive) {
  EXPECT_THROW(Sharpened(SharpeningSetting(50, 0, 0)), cv::Exception);
  EXPECT_THROW(Sharpened(SharpeningSetting(50, -1, 0)), cv::Exception);
}

INSTANTIATE_TEST_SUITE_P(Subjects, SharpeningExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
