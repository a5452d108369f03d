#include "reference/perceptual_hash.h"

#include <gtest/gtest.h>

#include <cmath>

namespace lumvik::reference {
namespace {

constexpr double kReducedSide = 32;

// A level for each pixel of 32 x 32: 128 and the wave of one frequency.
cv::Mat Wave(int row, int column, double amplitude) {
  cv::Mat gray(32, 32, CV_8UC1);
  for (int y = 0; y < 32; ++y) {
    for (int x = 0; x < 32; ++x) {
      const double wave = std::cos(CV_PI * (2 * y + 1) * row / (2 * kReducedSide)) *
                          std::cos(CV_PI * (2 * x + 1) * column / (2 * kReducedSide));
      gray.at<uchar>(y, x) = cv::saturate_cast<uchar>(128 + amplitude * wave);
    }
  }
  return gray;
}

// The orthonormal transform gives the mean times the side, and an even share to a single wave.
TEST(PerceptualHash, AWaveIsOneFrequency) {
  const cv::Mat frequencies = LowFrequencies(Wave(2, 5, 100));
  EXPECT_NEAR(frequencies.at<float>(0, 0), 128 * kReducedSide, 8);
  EXPECT_NEAR(frequencies.at<float>(2, 5), 100 * kReducedSide / 2, 8);
  EXPECT_NEAR(frequencies.at<float>(5, 2), 0, 8);
}

TEST(PerceptualHash, BitsRunRowByRowFromTheMostSignificant) {
  for (int row = 0; row < 8; ++row) {
    for (int column = 0; column < 8; ++column) {
      const uint64_t hash = PerceptualHash(Wave(row, column, 100));
      EXPECT_EQ(hash >> (63 - (8 * row + column)) & 1, 1U) << row << "," << column;
      if (row + column > 0) {
        EXPECT_EQ(PerceptualHash(Wave(row, column, -100)) >> (63 - (8 * row + column)) & 1, 0U);
      }
    }
  }
}

// All others are equal to the median 0, and only what is above it gives a 1.
TEST(PerceptualHash, AFlatImageHasTheFirstBitAlone) {
  EXPECT_EQ(PerceptualHash(cv::Mat(32, 32, CV_8UC1, cv::Scalar(77))), uint64_t{1} << 63);
  EXPECT_EQ(PerceptualHash(cv::Mat(32, 32, CV_8UC1, cv::Scalar(0))), 0U);
}

}  // namespace
}  // namespace lumvik::reference
