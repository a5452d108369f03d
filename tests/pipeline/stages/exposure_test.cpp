#include "pipeline/stages/exposure.h"

#include <gtest/gtest.h>

#include "pipeline/packed_rows.h"
#include "pipeline/row_steps.h"
#include "reference/exposure.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

TEST(Exposure, EqualsTheReferenceOverItsRange) {
  for (const float exposure : {-130.0F, -20.0F, -5.0F, -1.0F, -0.01F, 0.01F, 0.5F, 1.0F, 2.5F, 5.0F, 20.0F}) {
    for (const cv::Size size : test::OddSizes()) {
      cv::Mat expected;
      test::NoiseImage(size, 11).convertTo(expected, CV_32FC4, 1.4 / 65535, -0.2);
      cv::Mat actual = expected.clone();
      reference::Exposure(expected, exposure);
      RunRowSteps(RowsOf(actual), {Exposure(exposure)}, StoreIn(actual));
      EXPECT_TRUE(test::SameBytes(actual, expected)) << exposure << " stops at " << size;
    }
  }
}

}  // namespace
}  // namespace lumvik
