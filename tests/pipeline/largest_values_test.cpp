#include "pipeline/largest_values.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <opencv2/core/utility.hpp>

#include "support/instruction_sets.h"

namespace lumvik {
namespace {

constexpr float kLargestInfinity = std::numeric_limits<float>::infinity();

std::vector<float> ExpectedLargest(const cv::Mat& plane, size_t count) {
  std::vector<float> values = plane.reshape(1, 1);
  std::sort(values.begin(), values.end(), std::greater<>());
  values.resize(count);
  return values;
}

cv::Mat UniformNoise(cv::Size size) {
  cv::Mat plane(size, CV_32F);
  cv::RNG(7).fill(plane, cv::RNG::UNIFORM, -1, 1);
  return plane;
}

void ExpectLargest(const cv::Mat& plane) {
  for (const size_t count : {size_t{1}, plane.total() / 2 + 1, plane.total()}) {
    EXPECT_EQ(LargestValuesOf(plane, count), ExpectedLargest(plane, count)) << plane.size() << count;
  }
}

TEST(LargestValues, AreTheFirstOfAllInDescendingOrder) {
  for (const cv::Size size : {cv::Size(1, 1), {1, 90}, {90, 1}, {255, 33}, {300, 70}}) {
    test::WithEachInstructionSet([&] { ExpectLargest(UniformNoise(size)); });
  }
}

TEST(LargestValues, DoNotDependOnTheOrderOfValues) {
  const cv::Mat noise = UniformNoise({300, 70});
  for (const int order : {cv::SORT_ASCENDING, cv::SORT_DESCENDING}) {
    cv::Mat sorted;
    cv::sort(noise.reshape(1, 1), sorted, cv::SORT_EVERY_ROW | order);
    ExpectLargest(sorted.reshape(1, noise.rows));
  }
}

TEST(LargestValues, MayBeEqualOrInfinite) {
  cv::Mat plane(40, 300, CV_32F, cv::Scalar(0.5));
  ExpectLargest(plane);
  plane.at<float>(20, 3) = kLargestInfinity;
  plane.row(4).setTo(-kLargestInfinity);
  ExpectLargest(plane);
}

TEST(LargestValues, DoNotDependOnTheNumberOfThreads) {
  const cv::Mat plane = UniformNoise({300, 70});
  const int usual = cv::getNumThreads();
  for (const int threads : {1, 2, 3, 4}) {
    cv::setNumThreads(threads);
    EXPECT_EQ(LargestValuesOf(plane, 500), ExpectedLargest(plane, 500)) << threads;
  }
  cv::setNumThreads(usual);
}

TEST(LargestValues, ThatAreMissingAreNan) {
  cv::Mat plane(3, 300, CV_32F, cv::Scalar(std::nanf("")));
  plane.at<float>(1, 7) = 0.25F;
  plane.at<float>(2, 290) = -0.5F;
  const std::vector<float> largest = LargestValuesOf(plane, 3);
  ASSERT_EQ(largest.size(), 3U);
  EXPECT_EQ(largest[0], 0.25F);
  EXPECT_EQ(largest[1], -0.5F);
  EXPECT_TRUE(std::isnan(largest[2]));
}

}  // namespace
}  // namespace lumvik
