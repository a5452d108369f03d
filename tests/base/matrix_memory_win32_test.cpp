#include "base/matrix_memory_win32.h"

#include <gtest/gtest.h>

#include <array>
#include <opencv2/core.hpp>

namespace lumvik {
namespace {

constexpr int kSide = 1000;
constexpr float kMark = 7;

class MatrixMemoryTest : public testing::Test {
 protected:
  MatrixMemoryTest() { KeepMatrixMemory(); }
  ~MatrixMemoryTest() override { cv::Mat::setDefaultAllocator(before_); }
  MatrixMemoryTest(const MatrixMemoryTest&) = delete;
  MatrixMemoryTest& operator=(const MatrixMemoryTest&) = delete;

 private:
  cv::MatAllocator* before_ = cv::Mat::getDefaultAllocator();
};

// The value at the center of a new matrix that is not initialized: 0 if its pages are fresh.
float ValueAfterFreeing(cv::Size freed, cv::Size size) {
  cv::Mat(freed, CV_32F, cv::Scalar(kMark)).release();
  const cv::Mat next(size, CV_32F);
  return next.at<float>(next.rows / 2, next.cols / 2);
}

TEST_F(MatrixMemoryTest, ServesTheNextMatrixOfTheSameSize) {
  EXPECT_EQ(ValueAfterFreeing({kSide, kSide}, {kSide, kSide}), kMark);
}

TEST_F(MatrixMemoryTest, ServesASlightlySmallerMatrix) {
  EXPECT_EQ(ValueAfterFreeing({kSide, 5 * kSide}, {kSide, 4 * kSide}), kMark);
}

TEST_F(MatrixMemoryTest, DoesNotServeAMuchSmallerOrALargerMatrix) {
  EXPECT_EQ(ValueAfterFreeing({kSide, 5 * kSide}, {kSide, 3 * kSide}), 0);
  EXPECT_EQ(ValueAfterFreeing({kSide, kSide}, {kSide, 2 * kSide}), 0);
}

TEST_F(MatrixMemoryTest, KeepsNoBlockBeyondItsLimit) {
  constexpr int kRows = 1 + static_cast<int>(kMostKeptMatrixBytes / (kSide * sizeof(float)));
  EXPECT_EQ(ValueAfterFreeing({kSide, kRows}, {kSide, kRows}), 0);
}

TEST_F(MatrixMemoryTest, LeavesMemoryOfTheCallerAlone) {
  std::array<int, 6> values{1, 2, 3, 4, 5, 6};
  cv::Mat(2, 3, CV_32S, values.data()).release();
  EXPECT_EQ(values[5], 6);
}

TEST_F(MatrixMemoryTest, LaysOutMatricesOfThreeDimensions) {
  const std::array<int, 3> sizes{4, 5, 6};
  const cv::Mat matrix(3, sizes.data(), CV_16U);
  EXPECT_EQ(matrix.step[0], 60U);
  EXPECT_EQ(matrix.step[1], 12U);
  EXPECT_EQ(matrix.step[2], 2U);
  EXPECT_TRUE(matrix.isContinuous());
}

}  // namespace
}  // namespace lumvik
