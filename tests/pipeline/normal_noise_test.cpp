#include "pipeline/normal_noise.h"

#include <gtest/gtest.h>

#include "support/test_images.h"

namespace lumvik {
namespace {

constexpr double kNoiseDeviation = 0.0123;

cv::RNG GeneratorAt(uint64_t state) {
  cv::RNG generator;
  generator.state = state;
  return generator;
}

// Fills planes of this size with both, one after the other.
void ExpectOpenCvsNoise(cv::Size size, int planes, uint64_t state) {
  cv::RNG expected_generator = GeneratorAt(state);
  cv::RNG generator = GeneratorAt(state);
  for (int i = 0; i < planes; ++i) {
    cv::Mat expected(size, CV_32F);
    cv::Mat noise(size, CV_32F);
    expected_generator.fill(expected, cv::RNG::NORMAL, 0, kNoiseDeviation);
    FillWithNoise(noise, kNoiseDeviation, generator);
    ASSERT_TRUE(test::SameBytes(noise, expected)) << size << state << ", plane " << i;
    ASSERT_EQ(generator.state, expected_generator.state) << size << state << ", plane " << i;
  }
}

TEST(NormalNoise, IsOpenCvs) {
  for (const cv::Size size : test::OddSizes()) ExpectOpenCvsNoise(size, 1, 7);
  ExpectOpenCvsNoise({1777, 1333}, 2, 7);
}

TEST(NormalNoise, GoesOnWhereItEnded) {
  ExpectOpenCvsNoise({1, 1}, 20000, 7);
  ExpectOpenCvsNoise({2047, 1}, 200, 7);
}

TEST(NormalNoise, StartsFromAnyState) {
  for (const uint64_t state :
       {uint64_t{0}, uint64_t{1}, uint64_t{UINT32_MAX}, uint64_t{1} << 32, UINT64_MAX}) {
    ExpectOpenCvsNoise({300, 40}, 2, state);
  }
  constexpr uint64_t kFixedPoint = (uint64_t{4164903690} << 32) - 1;
  for (const uint64_t state : {kFixedPoint - 1, kFixedPoint, kFixedPoint + 1}) {
    ExpectOpenCvsNoise({300, 40}, 2, state);
  }
}

TEST(NormalNoise, FillsAPartOfAPlane) {
  cv::Mat whole(20, 30, CV_32F, cv::Scalar(2));
  cv::Mat part = whole({3, 4, 25, 10});
  cv::Mat expected(part.size(), CV_32F);
  cv::RNG generator(5);
  FillWithNoise(part, kNoiseDeviation, generator);
  cv::RNG(5).fill(expected, cv::RNG::NORMAL, 0, kNoiseDeviation);
  EXPECT_TRUE(test::SameBytes(part.clone(), expected));
  EXPECT_EQ(cv::countNonZero(whole == 2), 20 * 30 - 25 * 10);
}

}  // namespace
}  // namespace lumvik
