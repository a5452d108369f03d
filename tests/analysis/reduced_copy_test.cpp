#include "analysis/reduced_copy.h"

#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>

#include "base/luminance.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

TEST(ReducedCopy, KeepsTheProportionsInWholePixels) {
  EXPECT_EQ(ReducedCopy(test::NoiseImage({1000, 667}, 1), 512).size(), cv::Size(512, 341));
  EXPECT_EQ(ReducedCopy(test::NoiseImage({667, 1000}, 1), 512).size(), cv::Size(512, 767));
  EXPECT_EQ(ReducedCopy(test::NoiseImage({100, 60}, 1), 800).size(), cv::Size(800, 480)) << "enlarged";
}

TEST(ReducedCopy, IsAtLeastOnePixelHigh) {
  EXPECT_EQ(ReducedCopy(test::NoiseImage({4096, 1}, 1), 512).size(), cv::Size(512, 1));
}

TEST(ReducedCopy, HasALimitedHeight) {
  const ImageBuffer column(4096, 1, CV_16UC4, cv::Scalar::all(7));
  EXPECT_EQ(ReducedCopy(column, 512).size(), cv::Size(512, 32768));
  const ImageBuffer just_below(511, 8, CV_16UC4, cv::Scalar::all(7));
  EXPECT_EQ(ReducedCopy(just_below, 512).size(), cv::Size(512, 32704));
}

TEST(ReducedCopy, InterpolatesLinearly) {
  const ImageBuffer image = test::NoiseImage({100, 60}, 2);
  cv::Mat expected;
  cv::resize(image, expected, {512, 307}, 0, 0, cv::INTER_LINEAR);
  EXPECT_TRUE(test::SameBytes(ReducedCopy(image, 512), expected));
}

TEST(WeightedLuminance, AgreesWithLuminance) {
  const cv::Mat image = ToRgbaFloat(test::NoiseImage({203, 151}, 4));
  const cv::Mat luminance = WeightedLuminance(image);
  ASSERT_EQ(luminance.size(), image.size());
  for (int y = 0; y < image.rows; ++y) {
    for (int x = 0; x < image.cols; ++x) {
      const auto& pixel = image.at<cv::Vec4f>(y, x);
      ASSERT_NEAR(luminance.at<float>(y, x), Luminance(pixel[0], pixel[1], pixel[2]), 2e-7);
    }
  }
}

}  // namespace
}  // namespace lumvik
