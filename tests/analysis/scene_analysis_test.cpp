#include "analysis/scene_analysis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "analysis/auto_exposure.h"
#include "reference/scene_analysis.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

constexpr int kRows = 100;

// Gray of 512 columns, so that no pixel is changed by the reduction.
ImageBuffer Gray(double code, int rows = kRows) {
  return {rows, 512, CV_16UC4, cv::Scalar(code, code, code, 65535)};
}

// Gray, but for some rows at its top.
ImageBuffer WithRows(double code, int rows) {
  ImageBuffer image = Gray(32768);
  image.rowRange(0, rows).setTo(cv::Scalar(code, code, code, 65535));
  return image;
}

TEST(AnalyzeScene, OfAUniformGrayEverythingIsKnown) {
  const float exposure = AutoExposure(Gray(32768));
  EXPECT_THAT(
      analyze_scene(Gray(32768)),
      testing::ElementsAre(exposure, 0, 22, 0, 15, 0, 5, 6500, 0, 5, 16, 6, 0, 0, 35, 1,  // slots 0 to 15
                           0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(AnalyzeScene, OfAnEmptyImageSuggestsNothing) {
  EXPECT_THAT(analyze_scene({}), testing::Each(0));
}

TEST(AnalyzeScene, WhitePixelsLowerTheHighlights) {
  const auto highlights = [](int rows) { return analyze_scene(WithRows(65535, rows))[kHighlightsSlot]; };
  EXPECT_EQ(highlights(0), 0);
  EXPECT_EQ(highlights(1), 0);
  EXPECT_EQ(highlights(2), -10);
  EXPECT_EQ(highlights(7), -35);
  EXPECT_EQ(highlights(8), -40);
  EXPECT_EQ(highlights(10), -40);
  EXPECT_EQ(highlights(kRows), -40);
}

TEST(AnalyzeScene, BlackPixelsLiftTheShadows) {
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

TEST(AnalyzeScene, OnlyTheOutermostLevelsAreClipped) {
  EXPECT_EQ(analyze_scene(Gray(65535 - 257))[kHighlightsSlot], 0);
  EXPECT_EQ(analyze_scene(Gray(257))[kShadowsSlot], 15);
}

TEST(AnalyzeScene, NarrowHistogramsGetContrastAndWideOnesLoseIt) {
  // Half of the rows at each of two levels: their distance is twice the standard deviation.
  const auto contrast = [](int low, int high) {
    ImageBuffer image = Gray(257.0 * low);
    image.rowRange(0, kRows / 2).setTo(cv::Scalar::all(257.0 * high));
    return analyze_scene(image)[kContrastSlot];
  };
  EXPECT_NEAR(contrast(100, 151), 22 * (0.15 - 0.1) / 0.15, 1e-3);
  EXPECT_NEAR(contrast(50, 152), 22 * (0.15 - 0.2) / 0.15, 1e-3);
  EXPECT_EQ(contrast(0, 255), -15);
}

TEST(AnalyzeScene, DetailTakesTheNoiseReductionAway) {
  const auto noise_reduction = [](int distance) {
    ImageBuffer image = Gray(32768);
    for (int x = 0; x < image.cols; x += 2) image.col(x).setTo(cv::Scalar::all(32768.0 + distance));
    return analyze_scene(image)[kNrLuminanceSlot];
  };
  // The Laplacian of such stripes is plus and minus twice their distance.
  const auto expected = [](int distance) { return (0.1 - 2 * distance / 65535.0) / 0.1 * 80 + 20; };
  EXPECT_EQ(noise_reduction(2000), 35);
  EXPECT_NEAR(noise_reduction(3000), expected(3000), 1e-2);
  EXPECT_NEAR(noise_reduction(4000), expected(4000), 1e-2);
  EXPECT_EQ(noise_reduction(4200), 0);
}

TEST(AnalyzeScene, ExposureIsThatOfItsOwnCopy) {
  // One row of the copy in ten is bright: the median is that of the others.
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
