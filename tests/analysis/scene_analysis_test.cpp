#include "analysis/scene_analysis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/auto_exposure.h"
#include "reference/scene_analysis.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

constexpr int kRows = 100;

// As wide as the copy that is measured, so that the pixels keep their values.
ImageBuffer Gray(double code, int rows = kRows) {
  return {rows, 512, CV_16UC4, cv::Scalar(code, code, code, 65535)};
}

// Gray with `rows` of another level at the top.
ImageBuffer WithRows(double code, int rows) {
  ImageBuffer image = Gray(32768);
  image.rowRange(0, rows).setTo(cv::Scalar(code, code, code, 65535));
  return image;
}

TEST(AnalyzeScene, IsKnownForUniformGray) {
  const float exposure = AutoExposure(Gray(32768));
  EXPECT_THAT(
      analyze_scene(Gray(32768)),
      testing::ElementsAre(exposure, 0, 22, 0, 15, 0, 5, 6500, 0, 5, 16, 6, 0, 0, 35, 1,  // slots 0 to 15
                           0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(AnalyzeScene, IsZeroForAnEmptyImage) {
  EXPECT_THAT(analyze_scene({}), testing::Each(0));
}

TEST(AnalyzeScene, LowersHighlightsByTheShareOfWhite) {
  const auto highlights = [](int rows) { return analyze_scene(WithRows(65535, rows))[kHighlightsSlot]; };
  EXPECT_EQ(highlights(0), 0);
  EXPECT_EQ(highlights(1), 0);
  EXPECT_EQ(highlights(2), -10);
  EXPECT_EQ(highlights(7), -35);
  EXPECT_EQ(highlights(8), -40);
  EXPECT_EQ(highlights(10), -40);
  EXPECT_EQ(highlights(kRows), -40);
}

TEST(AnalyzeScene, LiftsShadowsByTheShareOfBlack) {
  const auto shadows = [](int rows) { return analyze_scene(WithRows(0, rows))[kShadowsSlot]; };
  EXPECT_EQ(shadows(0), 15);
  EXPECT_EQ(shadows(1), 15);
  EXPECT_EQ(shadows(3), 15);
  EXPECT_EQ(shadows(5), 20);
  EXPECT_EQ(shadows(6), 24);
  EXPECT_EQ(shadows(7), 25);
  EXPECT_EQ(shadows(10), 25);
  EXPECT_EQ(shadows(kRows), 25);
}

TEST(AnalyzeScene, CountsOnlyTheOutermostLevelsAsClipped) {
  EXPECT_EQ(analyze_scene(Gray(65535 - 257))[kHighlightsSlot], 0);
  EXPECT_EQ(analyze_scene(Gray(257))[kShadowsSlot], 15);
}

TEST(AnalyzeScene, AddsContrastToNarrowHistogramsAndTakesItFromWideOnes) {
  // Half of the rows at each level: the levels are two standard deviations apart.
  const auto contrast = [](int low, int high) {
    ImageBuffer image = Gray(257.0 * low);
    image.rowRange(0, kRows / 2).setTo(cv::Scalar::all(257.0 * high));
    return analyze_scene(image)[kContrastSlot];
  };
  EXPECT_NEAR(contrast(100, 151), 22 * (0.15 - 0.1) / 0.15, 1e-3);
  EXPECT_NEAR(contrast(50, 152), 22 * (0.15 - 0.2) / 0.15, 1e-3);
  EXPECT_EQ(contrast(0, 255), -15);
}

TEST(AnalyzeScene, SuggestsLessNoiseReductionForMoreDetail) {
  const auto noise_reduction = [](int difference) {
    ImageBuffer image = Gray(32768);
    for (int x = 0; x < image.cols; x += 2) image.col(x).setTo(cv::Scalar::all(32768.0 + difference));
    return analyze_scene(image)[kNrLuminanceSlot];
  };
  // The Laplacian of these stripes is plus or minus twice their difference.
  const auto expected = [](int difference) { return (0.1 - 2 * difference / 65535.0) / 0.1 * 80 + 20; };
  EXPECT_EQ(noise_reduction(2000), 35);
  EXPECT_NEAR(noise_reduction(3000), expected(3000), 1e-2);
  EXPECT_NEAR(noise_reduction(4000), expected(4000), 1e-2);
  EXPECT_EQ(noise_reduction(4200), 0);
}

TEST(AnalyzeScene, MeasuresExposureOnItsOwnCopy) {
  // A tenth of the rows is bright, which leaves the median at gray.
  EXPECT_EQ(analyze_scene(WithRows(65535, 10))[kExposureSlot], AutoExposure(Gray(32768)));
}

TEST(AnalyzeScene, EqualsTheReference) {
  std::vector<ImageBuffer> images = {test::NoiseImage({203, 151}, 3)};
  for (const char* name : {"cat.jpg", "eiffel_gps_north_east.jpg", "tower_orientation8.jpg"}) {
    for (const int width : {100, 512, 900}) images.push_back(test::Photograph(name, width));
  }
  for (const cv::Size size : test::OddSizes()) images.push_back(test::NoiseImage(size, 3));
  for (const ImageBuffer& image : images) {
    EXPECT_EQ(analyze_scene(image), reference::AnalyzeScene(image)) << image.size();
  }
}

}  // namespace
}  // namespace lumvik
