#include "analysis/auto_exposure.h"

#include <gtest/gtest.h>

#include <random>

#include "reference/auto_exposure.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

Histogram Counts(const std::vector<size_t>& levels) {
  Histogram counts = {};
  for (const size_t level : levels) ++counts[level];
  return counts;
}

// Two pixels, since half of one pixel is truncated to 0.
float SuggestedAt(size_t level) {
  return exposure_from_histogram(Counts({level, level}));
}

ImageBuffer Gray(cv::Size size, double code) {
  return {size, CV_16UC4, cv::Scalar(code, code, code, 65535)};
}

TEST(ExposureFromHistogram, MovesTheMedianAThirdOfTheWay) {
  EXPECT_NEAR(SuggestedAt(115), -0.0011F, 5e-5F);
  EXPECT_NEAR(SuggestedAt(64), 0.29482F, 5e-5F);
  EXPECT_NEAR(SuggestedAt(150), -0.13526F, 5e-5F);
}

TEST(ExposureFromHistogram, StaysBetweenMinusAQuarterAndOne) {
  EXPECT_EQ(SuggestedAt(0), 1.0F);
  EXPECT_EQ(SuggestedAt(15), 1.0F);
  EXPECT_LT(SuggestedAt(16), 1.0F);
  EXPECT_GT(SuggestedAt(188), -0.25F);
  EXPECT_EQ(SuggestedAt(189), -0.25F);
  EXPECT_EQ(SuggestedAt(255), -0.25F);
}

TEST(ExposureFromHistogram, TheMedianIsTheFirstLevelThatReachesHalf) {
  EXPECT_EQ(exposure_from_histogram(Counts({100, 200})), SuggestedAt(100));
  EXPECT_EQ(exposure_from_histogram(Counts({100, 120, 140, 200})), SuggestedAt(120));
  EXPECT_EQ(exposure_from_histogram(Counts({100, 120, 200})), SuggestedAt(100))
      << "half of 3 is truncated to 1";
}

TEST(ExposureFromHistogram, HalfOfASinglePixelIsZero) {
  EXPECT_EQ(exposure_from_histogram(Counts({255})), 1.0F);
}

TEST(ExposureFromHistogram, TheMedianIsOneHalfWithoutPixels) {
  EXPECT_NEAR(exposure_from_histogram({}), -0.0532F, 5e-5F);
}

TEST(ExposureFromHistogram, EqualsTheReference) {
  std::mt19937 random(4);
  for (int run = 0; run < 1000; ++run) {
    Histogram counts = {};
    for (int pixel = run % 50; pixel >= 0; --pixel) ++counts[random() % (2U + random() % 254U)];
    EXPECT_EQ(exposure_from_histogram(counts), reference::ExposureFromHistogram(counts)) << run;
  }
}

TEST(AutoExposure, IsKnownForUniformImages) {
  EXPECT_EQ(AutoExposure(Gray({30, 20}, 0)), 1.0F);
  EXPECT_EQ(AutoExposure(Gray({30, 20}, 65535)), -0.25F);
  EXPECT_NEAR(AutoExposure(Gray({30, 20}, 0.45 * 65535)), -0.0011F, 5e-5F);
}

TEST(AutoExposure, WeightsTheChannelsAsLuminance) {
  const auto full = [](double red, double green, double blue) {
    return AutoExposure({8, 8, CV_16UC4, cv::Scalar(red, green, blue, 0) * 65535.0});
  };
  EXPECT_EQ(full(1, 0, 0), SuggestedAt(54));
  EXPECT_EQ(full(0, 1, 0), SuggestedAt(182));
  EXPECT_EQ(full(0, 0, 1), SuggestedAt(18));
}

TEST(AutoExposure, CountsTheSquareCopyOfAnyImage) {
  ImageBuffer image = Gray({3000, 10}, 0.2 * 65535);
  image.colRange(0, 1400).setTo(cv::Scalar::all(0.6 * 65535));
  EXPECT_EQ(AutoExposure(image), SuggestedAt(51));
  image.colRange(1400, 1600).setTo(cv::Scalar::all(0.6 * 65535));
  EXPECT_EQ(AutoExposure(image), SuggestedAt(153));
}

TEST(AutoExposure, EqualsTheReference) {
  for (const char* name : {"cat.jpg", "eiffel_gps_north_east.jpg", "tower_orientation8.jpg"}) {
    for (const int width : {100, 256, 700}) {
      const ImageBuffer photograph = test::Photograph(name, width);
      EXPECT_EQ(AutoExposure(photograph), reference::AutoExposure(photograph)) << name << " " << width;
    }
  }
  for (const cv::Size size : test::OddSizes()) {
    const ImageBuffer noise = test::NoiseImage(size, 3);
    EXPECT_EQ(AutoExposure(noise), reference::AutoExposure(noise)) << size;
  }
}

}  // namespace
}  // namespace lumvik
