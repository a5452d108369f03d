#include "pipeline/bilinear_sampler.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <opencv2/imgproc.hpp>

#include "pipeline/row_steps.h"
#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using test::WorkingNoise;

cv::Mat Stored(const RowImage& image) {
  cv::Mat stored(image.size, CV_32FC4);
  RunRowSteps(image, {}, StoreIn(stored));
  return stored;
}

TEST(NearestPlace, RoundsAsOpenCvDoes) {
  for (const float value : {0.0F, 0.4F, 0.5F, 1.5F, 2.5F, -0.5F, -1.5F, -7.6F, 131071.5F, -131070.5F}) {
    EXPECT_EQ(NearestPlace(value), cvRound(value)) << value;
    EXPECT_EQ(NearestPlace(static_cast<double>(value)), cvRound(value)) << value;
  }
}

TEST(NearestPlace, StaysFarOutside) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(NearestPlace(-kInfinity), -32768 * 32);
  EXPECT_EQ(NearestPlace(std::numeric_limits<double>::quiet_NaN()), -32768 * 32);
  EXPECT_EQ(NearestPlace(kInfinity), 32768 * 32 - 1);
  EXPECT_EQ(NearestPlace(1e30), 32768 * 32 - 1);
}

// Waves that leave the image on every side, by up to twice its size.
cv::Point2f Place(int x, int y, cv::Size size) {
  return {
      static_cast<float>(x) + 0.3F * static_cast<float>(size.width) * std::sin(0.05F * static_cast<float>(y)),
      1.7F * static_cast<float>(y) -
          0.9F * static_cast<float>(size.height) * std::cos(0.03F * static_cast<float>(x))};
}

TEST(Sampled, IsOpenCvsRemap) {
  std::vector<cv::Size> sizes = test::OddSizes();
  sizes.emplace_back(kMaxPart + 77, 35);
  for (const cv::Size size : sizes) {
    const cv::Mat working = WorkingNoise(size);
    cv::Mat map(size, CV_32FC2);
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) map.at<cv::Point2f>(y, x) = Place(x, y, size);
    }
    cv::Mat expected;
    cv::remap(working, expected, map, cv::noArray(), cv::INTER_LINEAR, cv::BORDER_REFLECT);
    const auto place_row = [size](const PixelRow& part, Places& places) {
      for (int i = 0; i < part.columns; ++i) {
        const cv::Point2f place = Place(part.x + i, part.y, size);
        places.x[i] = NearestPlace(place.x * kPlacesPerPixel);
        places.y[i] = NearestPlace(place.y * kPlacesPerPixel);
      }
    };
    EXPECT_LT(cv::norm(Stored(Sampled(working, place_row)), expected, cv::NORM_INF), 1e-6) << size;
    test::WithEachInstructionSet([&] {
      EXPECT_LT(cv::norm(Stored(Sampled(working, place_row)), expected, cv::NORM_INF), 1e-6) << size;
    });
  }
}

}  // namespace
}  // namespace lumvik
