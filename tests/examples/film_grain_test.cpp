// Worked examples of film grain.
#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/imgproc.hpp>
#include <utility>
#include <vector>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;
using test::SamePixels;
using test::Uniform;

constexpr int kSide = 256;
constexpr uint64_t kSeed = 20240501;

class FilmGrainExample : public test::StageExample {
 protected:
  cv::Mat Grained(float amount, float size, const cv::Mat& working) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.grain_amount = amount;
    adjustments.grain_size = size;
    return Developed(working, adjustments);
  }

  cv::Mat Grained(float amount, float size, const cv::Vec4f& color) const {
    return Grained(amount, size, Uniform(kSide, kSide, color));
  }

  cv::Mat Seeded(float amount, float size, const cv::Vec4f& color) const {
    cv::theRNG().state = kSeed;
    return Grained(amount, size, color);
  }

  // What is added to the red channel of middle gray.
  cv::Mat Noise(float amount, float size) const {
    cv::Mat plane;
    cv::extractChannel(Seeded(amount, size, {0.5F, 0.5F, 0.5F, 1}), plane, 0);
    return plane - 0.5;
  }
};

// The draw that the seed gives.
cv::Mat Draw(double deviation, cv::Size size = {kSide, kSide}) {
  cv::theRNG().state = kSeed;
  cv::Mat draw(size, CV_32F);
  cv::randn(draw, 0, deviation);
  return draw;
}

double Deviation(const cv::Mat& plane) {
  cv::Scalar mean;
  cv::Scalar deviation;
  cv::meanStdDev(plane, mean, deviation);
  return deviation[0];
}

// The correlation of neighboring columns.
double NeighborCorrelation(const cv::Mat& plane) {
  const cv::Mat left = plane.colRange(0, plane.cols - 1);
  const cv::Mat right = plane.colRange(1, plane.cols);
  return left.dot(right) / std::sqrt(left.dot(left) * right.dot(right));
}

TEST_P(FilmGrainExample, CoversWideAndTallFrames) {
  for (const cv::Size size : test::kExampleSizes) {
    const cv::Mat draw = Draw(0.025, size);
    cv::theRNG().state = kSeed;
    cv::Mat plane;
    const cv::Mat gray = Uniform(size.width, size.height, {0.5F, 0.5F, 0.5F, 1});
    cv::extractChannel(Grained(50, 0, gray), plane, 2);
    EXPECT_LE(cv::norm(plane - 0.5, draw, cv::NORM_INF), 1e-6) << size;
  }
}

TEST_P(FilmGrainExample, DeviationIsIndependentOfTheSize) {
  // White noise is as strong as the draw (65536 values: 0.3 %), blurred noise is renormalized.
  EXPECT_NEAR(Deviation(Noise(100, 1)), 0.05, 5e-4);
  for (const float size : {2.0F, 25.0F, 100.0F, 200.0F}) {
    EXPECT_NEAR(Deviation(Noise(100, size)), 0.05, 1e-6) << size;
  }
  EXPECT_NEAR(Deviation(Noise(40, 25)), 0.02, 1e-6);
}

TEST_P(FilmGrainExample, SizeBlursTheNoise) {
  // Gaussian noise blurred with sigma correlates by exp(-1 / (4 sigma²)) from column to column.
  EXPECT_NEAR(NeighborCorrelation(Noise(50, 100)), std::exp(-1 / (4 * 2.5 * 2.5)), 0.01);
  EXPECT_NEAR(NeighborCorrelation(Noise(50, 25)), std::exp(-1 / (4.0 * 1.0)), 0.02);
}

TEST_P(FilmGrainExample, SizeIsTheSigma) {
  for (const auto& [size, sigma] : {std::pair(25.0F, 1.0), {100.0F, 2.5}}) {
    cv::Mat blurred;
    cv::GaussianBlur(Draw(0.025), blurred, cv::Size(0, 0), sigma, sigma, cv::BORDER_REFLECT_101);
    blurred *= 0.025 / Deviation(blurred);
    EXPECT_LE(cv::norm(Noise(50, size), blurred, cv::NORM_INF), 1e-6) << size;
  }
}

// Noise of a deviation up to 1e-6 after the blur is not scaled up again. On black only the positive half
// shows.
TEST_P(FilmGrainExample, FaintestNoiseIsNotRenormalized) {
  const auto deviation_on_black = [this](double deviation) {
    cv::Mat plane;
    cv::extractChannel(Seeded(static_cast<float>(deviation / 0.0005), 25, {0, 0, 0, 1}), plane, 0);
    return std::sqrt(2 * plane.dot(plane) / static_cast<double>(plane.total()));
  };
  // A blur of sigma 1 leaves 0.282 of the deviation: 1.04e-6 and 0.96e-6.
  EXPECT_NEAR(deviation_on_black(3.7e-6), 3.7e-6, 2e-7);
  EXPECT_NEAR(deviation_on_black(3.4e-6), 0.96e-6, 5e-8);
}

TEST_P(FilmGrainExample, SmallSizesAreWhiteNoise) {
  const cv::Mat draw = Draw(0.025);
  for (const float size : {-10.0F, 0.0F, 1.0F}) {
    const cv::Mat noise = Noise(50, size);
    EXPECT_LE(cv::norm(noise, draw, cv::NORM_INF), 1e-6) << size;
    EXPECT_NEAR(NeighborCorrelation(noise), 0, 0.02) << size;
  }
  EXPECT_GT(cv::norm(Noise(50, 1.05F), draw, cv::NORM_INF), 1e-3);
}

TEST_P(FilmGrainExample, NoiseIsColorless) {
  std::vector<cv::Mat> planes;
  cv::split(Seeded(30, 25, {0.4F, 0.5F, 0.6F, 0.7F}), planes);
  EXPECT_LE(cv::norm(planes[1] - planes[0] - 0.1, cv::NORM_INF), 1e-6);
  EXPECT_LE(cv::norm(planes[2] - planes[1] - 0.1, cv::NORM_INF), 1e-6);
  EXPECT_LE(cv::norm(planes[3] - static_cast<double>(0.7F), cv::NORM_INF), 1e-7);
}

TEST_P(FilmGrainExample, ClampsEveryColorValue) {
  std::vector<cv::Mat> planes;
  cv::split(Seeded(100, 1, {1, 0, 1.5F, 1.5F}), planes);
  double low = 0;
  double high = 0;
  cv::minMaxLoc(planes[0], &low, &high);
  EXPECT_EQ(high, 1.0);
  EXPECT_LT(low, 0.9);
  cv::minMaxLoc(planes[1], &low, &high);
  EXPECT_EQ(low, 0.0);
  EXPECT_GT(high, 0.1);
  EXPECT_EQ(cv::countNonZero(planes[2] != 1.0), 0);
  EXPECT_EQ(cv::countNonZero(planes[3] != 1.5), 0);
}

TEST_P(FilmGrainExample, FollowsTheProcessWideGenerator) {
  const cv::Vec4f gray(0.5F, 0.5F, 0.5F, 1);
  const cv::Mat first = Seeded(50, 25, gray);
  EXPECT_FALSE(SamePixels(Grained(50, 25, gray), first)) << "not seeded by the stage";
  EXPECT_TRUE(SamePixels(Seeded(50, 25, gray), first));
}

TEST_P(FilmGrainExample, OnlyPositiveAmountsAct) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_TRUE(SamePixels(Grained(0, 25, over), Uniform(kSide, kSide, over)));
  EXPECT_TRUE(SamePixels(Grained(-40, 25, over), Uniform(kSide, kSide, over)));
}

INSTANTIATE_TEST_SUITE_P(Subjects, FilmGrainExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
