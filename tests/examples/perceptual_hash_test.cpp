// Worked examples of the perceptual hash.
#include "analysis/perceptual_hash.h"

#include <gtest/gtest.h>

#include <cmath>

#include "examples/subject.h"
#include "reference/perceptual_hash.h"

namespace lumvik {
namespace {

class PerceptualHashExample : public test::Example<uint64_t(const cv::Mat& gray)> {};

constexpr double kReducedSide = 32;

// 32 x 32 pixels: 128 plus the wave of one frequency.
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

// The orthonormal transform gives the mean times the side, and a single wave half of its amplitude times the
// side.
TEST(LowFrequencies, AWaveIsOneFrequency) {
  const cv::Mat frequencies = reference::LowFrequencies(Wave(2, 5, 100));
  EXPECT_NEAR(frequencies.at<float>(0, 0), 128 * kReducedSide, 8);
  EXPECT_NEAR(frequencies.at<float>(2, 5), 100 * kReducedSide / 2, 8);
  EXPECT_NEAR(frequencies.at<float>(5, 2), 0, 8);
}

TEST_P(PerceptualHashExample, BitsAreInRowMajorOrderFromTheMostSignificant) {
  for (int row = 0; row < 8; ++row) {
    for (int column = 0; column < 8; ++column) {
      const uint64_t hash = GetParam().run(Wave(row, column, 100));
      EXPECT_EQ(hash >> (63 - (8 * row + column)) & 1, 1U) << row << "," << column;
      if (row + column > 0) {
        EXPECT_EQ(GetParam().run(Wave(row, column, -100)) >> (63 - (8 * row + column)) & 1, 0U);
      }
    }
  }
}

// All other frequencies equal the median 0, and only values above it give a 1.
TEST_P(PerceptualHashExample, AFlatImageSetsTheFirstBitAlone) {
  EXPECT_EQ(GetParam().run(cv::Mat(32, 32, CV_8UC1, cv::Scalar(77))), uint64_t{1} << 63);
  EXPECT_EQ(GetParam().run(cv::Mat(32, 32, CV_8UC1, cv::Scalar(0))), 0U);
}

INSTANTIATE_TEST_SUITE_P(Subjects, PerceptualHashExample,
                         test::ReferenceAndEngine(reference::PerceptualHash, PerceptualHash),
                         test::SubjectName());

}  // namespace
}  // namespace lumvik
