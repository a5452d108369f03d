#include "analysis/auto_straighten.h"

#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/imgproc.hpp>
#include <random>

#include "reference/auto_straighten.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

constexpr double kDegree = CV_PI / 180;

float LeanOfOne(int x1, int y1, int x2, int y2) {
  return LeanOf({cv::Vec4i(x1, y1, x2, y2)});
}

cv::Mat Background(cv::Size size = {800, 533}) {
  return {size, CV_16UC4, cv::Scalar(15000, 15000, 15000, 65535)};
}

// Bright ground below a horizon through the center that rises to the right by `degrees`.
ImageBuffer Horizon(double degrees, cv::Size size = {800, 533}) {
  cv::Mat image = Background(size);
  for (int y = 0; y < image.rows; ++y) {
    for (int x = 0; x < image.cols; ++x) {
      const double horizon = image.rows / 2.0 - (x - image.cols / 2.0) * std::tan(degrees * kDegree);
      if (y > horizon) image.at<cv::Vec<uint16_t, 4>>(y, x) = {50000, 50000, 50000, 65535};
    }
  }
  return image;
}

TEST(LeanOf, ALineThatRisesToTheRightIsPositive) {
  EXPECT_NEAR(LeanOfOne(0, 400, 799, 380), 1.434, 1e-3);
  EXPECT_NEAR(LeanOfOne(0, 380, 799, 400), -1.434, 1e-3);
  EXPECT_EQ(LeanOfOne(0, 400, 799, 400), 0);
}

TEST(LeanOf, ASegmentMayBeDrawnFromRightToLeft) {
  EXPECT_NEAR(LeanOfOne(799, 380, 0, 400), 1.434, 1e-3);
  EXPECT_NEAR(LeanOfOne(799, 400, 0, 380), -1.434, 1e-3);
  EXPECT_EQ(LeanOfOne(799, 400, 0, 400), 0);
}

TEST(LeanOf, IgnoresSegmentsSteeperThan30Degrees) {
  constexpr double kTolerance = 2e-5;  // the end is rounded to a whole pixel, up to 1.2e-5 degrees away
  const auto lean_at = [](double degrees) {
    return LeanOfOne(0, 0, 1000000, cvRound(-1000000 * std::tan(degrees * kDegree)));
  };
  EXPECT_NEAR(lean_at(29.9), 29.9, 1e-4);
  EXPECT_NEAR(lean_at(30), 30, kTolerance);
  EXPECT_EQ(lean_at(30.01), 0);
  EXPECT_EQ(lean_at(30.5), 0);
  EXPECT_NEAR(lean_at(-30), -30, kTolerance);
  EXPECT_EQ(lean_at(-30.5), 0);
  EXPECT_EQ(LeanOfOne(0, 10864, 18817, 0), 30) << "rounds to the limit itself";
  EXPECT_EQ(LeanOfOne(5, 0, 5, 500), 0);
  EXPECT_EQ(LeanOfOne(5, 500, 5, 0), 0);
}

TEST(LeanOf, IgnoresSegmentsOfUpTo20Pixels) {
  EXPECT_EQ(LeanOfOne(0, 0, 16, 12), 0) << "steep";
  EXPECT_EQ(LeanOf({{0, 0, 20, 0}, {0, 100, 100, 90}}), LeanOfOne(0, 100, 100, 90));
  EXPECT_NE(LeanOf({{0, 0, 21, 0}, {0, 100, 100, 90}}), LeanOfOne(0, 100, 100, 90));
  EXPECT_EQ(LeanOfOne(0, 5, 19, 0), 0);
  EXPECT_GT(LeanOfOne(0, 5, 20, 0), 14);
}

TEST(LeanOf, WeightsSegmentsByLength) {
  // 300 pixels at 0 degrees, 102 pixels rising by 11.3099 degrees, and a vertical.
  const std::vector<cv::Vec4i> segments = {{0, 0, 300, 0}, {0, 300, 100, 280}, {0, 0, 0, 900}};
  const double length = std::sqrt(100.0 * 100 + 20 * 20);
  EXPECT_NEAR(LeanOf(segments), 11.3099 * length / (300 + length), 1e-3);
}

TEST(LeanOf, IsZeroWithoutSegments) {
  EXPECT_EQ(LeanOf({}), 0);
}

TEST(LeanOf, EqualsTheReference) {
  std::mt19937 random(6);
  const auto coordinate = [&random] { return static_cast<int>(random() % 800); };
  for (int run = 0; run < 500; ++run) {
    std::vector<cv::Vec4i> segments;
    for (int i = run % 20; i >= 0; --i) {
      segments.emplace_back(coordinate(), coordinate(), coordinate(), coordinate());
    }
    EXPECT_EQ(LeanOf(segments), reference::Vote(segments)) << run;
  }
}

TEST(AutoStraighten, MeasuresATiltedHorizon) {
  for (const double degrees : {-25.0, -8.0, -3.0, -1.0, 0.0, 1.0, 3.0, 8.0, 25.0}) {
    EXPECT_NEAR(AutoStraighten(Horizon(degrees)), degrees, 0.5) << degrees;
  }
}

TEST(AutoStraighten, MeasuresAtAnySize) {
  EXPECT_NEAR(AutoStraighten(Horizon(5, {300, 200})), 5, 0.6);
  EXPECT_NEAR(AutoStraighten(Horizon(5, {2000, 1333})), 5, 0.6);
  EXPECT_NEAR(AutoStraighten(Horizon(5, {800, 1200})), 5, 0.6);
}

// The line search breaks a thin line into short pieces between whole pixels.
TEST(AutoStraighten, MeasuresAThinLine) {
  cv::Mat image = Background();
  cv::line(image, {0, 400}, {799, 380}, cv::Scalar::all(60000), 2, cv::LINE_8);
  EXPECT_NEAR(AutoStraighten(image), 1.43, 0.8);
  EXPECT_GT(AutoStraighten(image), 0.3);
}

TEST(AutoStraighten, IsZeroForVerticalAndSteepLines) {
  cv::Mat upright = Background();
  for (int x = 100; x < 800; x += 150) upright.colRange(x, x + 40).setTo(cv::Scalar::all(50000));
  EXPECT_EQ(AutoStraighten(upright), 0);
  EXPECT_EQ(AutoStraighten(Horizon(45)), 0);
}

TEST(AutoStraighten, IsZeroWithoutLines) {
  EXPECT_EQ(AutoStraighten(Background()), 0);
  EXPECT_EQ(AutoStraighten(Background({4096, 1})), 0);
  EXPECT_EQ(AutoStraighten(Background({1, 1})), 0);
}

TEST(AutoStraighten, EqualsTheReference) {
  std::vector<ImageBuffer> images = {test::NoiseImage({203, 151}, 3), Horizon(7)};
  for (const char* name : {"cat.jpg", "eiffel_gps_north_east.jpg", "tower_orientation8.jpg"}) {
    for (const int width : {100, 800, 1200}) images.push_back(test::Photograph(name, width));
  }
  int leaning = 0;
  for (const ImageBuffer& image : images) {
    const float lean = AutoStraighten(image);
    EXPECT_EQ(lean, reference::AutoStraighten(image)) << image.size();
    leaning += lean != 0 ? 1 : 0;
  }
  EXPECT_GT(leaning, 5);
}

}  // namespace
}  // namespace lumvik
