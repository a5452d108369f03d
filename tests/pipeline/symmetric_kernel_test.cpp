#include "pipeline/symmetric_kernel.h"

#include <gtest/gtest.h>

#include <utility>

#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

TEST(Mirrored, IsWhatOpenCvGives) {
  for (const int count : {1, 2, 3, 17}) {
    for (int at = -40; at <= 40; ++at) {
      EXPECT_EQ(Mirrored(at, count), cv::borderInterpolate(at, count, cv::BORDER_REFLECT_101))
          << at << " of " << count;
    }
  }
}

// Row after row, each for itself.
cv::Mat SumsOneByOne(const cv::Mat& rows, const SymmetricKernel& window) {
  const int reach = Radius(window);
  cv::Mat sums(kRowsAtOnce, rows.cols, CV_32F);
  for (int n = 0; n < kRowsAtOnce; ++n) {
    const auto pair = [&](int k) {
      return std::pair(rows.ptr<float>(n + reach - k), rows.ptr<float>(n + reach + k));
    };
    AddWeighted<4>(window, rows.ptr<float>(n + reach), pair, rows.cols, sums.ptr<float>(n));
  }
  return sums;
}

TEST(AddWeightedDown, GivesTheBytesOfEachRowForItself) {
  for (const SymmetricKernel& window : {SymmetricKernel{1.0F}, SymmetricKernel{0.5F, 0.25F},
                                        SymmetricKernel{0.3F, 0.2F, 0.1F, 0.03F, 0.02F}}) {
    const int reach = Radius(window);
    for (const int columns : {1, 15, 16, 77}) {
      const cv::Mat plane = test::NoisePlane({columns, 2 * reach + kRowsAtOnce});
      std::vector<const float*> rows;
      for (int y = 0; y < plane.rows; ++y) rows.push_back(plane.ptr<float>(y));
      test::WithEachInstructionSet([&] {
        cv::Mat sums(kRowsAtOnce, columns, CV_32F);
        float* to[kRowsAtOnce];
        for (int n = 0; n < kRowsAtOnce; ++n) to[n] = sums.ptr<float>(n);
        VectorizedByLanes(
            [&](auto lanes) { AddWeightedDown<lanes>(window, rows.data() + reach, to, columns); });
        EXPECT_TRUE(test::SameBytes(sums, SumsOneByOne(plane, window))) << reach << ", " << columns;
      });
    }
  }
}

}  // namespace
}  // namespace lumvik
