#include "pipeline/square_minimum.h"

#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>

#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

TEST(SquareMinimum, IsOpenCvsErosion) {
  std::vector<cv::Size> sizes = test::OddSizes();
  sizes.emplace_back(331, 217);
  sizes.emplace_back(1300, 90);  // more than one tile
  for (const cv::Size size : sizes) {
    cv::Mat plane(size, CV_32F);
    cv::RNG(5).fill(plane, cv::RNG::UNIFORM, -1, 1);
    for (const int side : {1, 3, 5, 15, 17, 41, 81}) {
      cv::Mat expected;
      cv::erode(plane, expected, cv::Mat::ones(side, side, CV_8U));
      EXPECT_TRUE(test::SameBytes(SquareMinimum(plane, side), expected)) << size << side;
      test::WithEachInstructionSet(
          [&] { EXPECT_TRUE(test::SameBytes(SquareMinimum(plane, side), expected)) << size << side; });
    }
  }
}

}  // namespace
}  // namespace lumvik
