#include "pipeline/bilinear_sampler.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <opencv2/imgproc.hpp>

#include "pipeline/packed_rows.h"
#include "pipeline/row_steps.h"
#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using test::WorkingNoise;

cv::Mat Stored(const RowSource& image) {
  cv::Mat stored(image.size, CV_32FC4);
  RunRowSteps(image, {}, StoreIn(stored));
  return stored;
}

TEST(NearestPosition, RoundsAsOpenCvDoes) {
  for (const float value : {0.0F, 0.4F, 0.5F, 1.5F, 2.5F, -0.5F, -1.5F, -7.6F, 131071.5F, -131070.5F}) {
    EXPECT_EQ(NearestPosition(value), cvRound(value)) << value;
    EXPECT_EQ(NearestPosition(static_cast<double>(value)), cvRound(value)) << value;
  }
}

TEST(NearestPosition, StaysFarOutside) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  EXPECT_EQ(NearestPosition(-kInfinity), -32768 * 32);
  EXPECT_EQ(NearestPosition(std::numeric_limits<double>::quiet_NaN()), -32768 * 32);
  EXPECT_EQ(NearestPosition(kInfinity), 32768 * 32 - 1);
  EXPECT_EQ(NearestPosition(1e30), 32768 * 32 - 1);
}

// Waves that leave the image on every side, by up to twice its size.
cv::Point2f Position(int x, int y, cv::Size size) {
  return {
      static_cast<float>(x) + 0.3F * static_cast<float>(size.width) * std::sin(0.05F * static_cast<float>(y)),
      1.7F * static_cast<float>(y) -
          0.9F * static_cast<float>(size.height) * std::cos(0.03F * static_cast<float>(x))};
}

TEST(BilinearSampling, IsOpenCvsRemap) {
  std::vector<cv::Size> sizes = test::OddSizes();
  sizes.emplace_back(kMaxPart + 77, 35);
  for (const cv::Size size : sizes) {
    const cv::Mat working = WorkingNoise(size);
    cv::Mat map(size, CV_32FC2);
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) map.at<cv::Point2f>(y, x) = Position(x, y, size);
    }
    cv::Mat expected;
    cv::remap(working, expected, map, cv::noArray(), cv::INTER_LINEAR, cv::BORDER_REFLECT);
    const auto locate = [size](const RowPart& part, SamplePositions& positions) {
      for (int i = 0; i < part.columns; ++i) {
        const cv::Point2f place = Position(part.x + i, part.y, size);
        positions.x[i] = NearestPosition(place.x * kPositionsPerPixel);
        positions.y[i] = NearestPosition(place.y * kPositionsPerPixel);
      }
    };
    EXPECT_LT(cv::norm(Stored(Transformed(working, BilinearSampling(size, locate))), expected, cv::NORM_INF),
              1e-6)
        << size;
    test::WithEachInstructionSet([&] {
      EXPECT_LT(
          cv::norm(Stored(Transformed(working, BilinearSampling(size, locate))), expected, cv::NORM_INF),
          1e-6)
          << size;
    });
  }
}

}  // namespace
}  // namespace lumvik
