#include "pipeline/symmetric_kernel.h"

#include <gtest/gtest.h>

#include <utility>

#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

// Row by row.
cv::Mat SumsRowByRow(const cv::Mat& rows, const SymmetricKernel& kernel) {
  const int radius = Radius(kernel);
  cv::Mat sums(kRowsPerBlock, rows.cols, CV_32F);
  for (int n = 0; n < kRowsPerBlock; ++n) {
    const auto pair = [&](int k) {
      return std::pair(rows.ptr<float>(n + radius - k), rows.ptr<float>(n + radius + k));
    };
    AddWeighted<4>(kernel, rows.ptr<float>(n + radius), pair, rows.cols, sums.ptr<float>(n));
  }
  return sums;
}

TEST(AddWeightedDown, GivesTheBytesOfSeparateRows) {
  for (const SymmetricKernel& kernel : {SymmetricKernel{1.0F}, SymmetricKernel{0.5F, 0.25F},
                                        SymmetricKernel{0.3F, 0.2F, 0.1F, 0.03F, 0.02F}}) {
    const int radius = Radius(kernel);
    for (const int columns : {1, 15, 16, 77}) {
      const cv::Mat plane = test::NoisePlane({columns, 2 * radius + kRowsPerBlock});
      std::vector<const float*> rows;
      for (int y = 0; y < plane.rows; ++y) rows.push_back(plane.ptr<float>(y));
      test::WithEachInstructionSet([&] {
        cv::Mat sums(kRowsPerBlock, columns, CV_32F);
        float* to[kRowsPerBlock];
        for (int n = 0; n < kRowsPerBlock; ++n) to[n] = sums.ptr<float>(n);
        VectorizedByLanes(
            [&](auto lanes) { AddWeightedDown<lanes>(kernel, rows.data() + radius, to, columns); });
        EXPECT_TRUE(test::SameBytes(sums, SumsRowByRow(plane, kernel))) << radius << ", " << columns;
      });
    }
  }
}

}  // namespace
}  // namespace lumvik
