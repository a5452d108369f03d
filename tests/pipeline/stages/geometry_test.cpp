#include "pipeline/stages/geometry.h"

#include <gtest/gtest.h>

#include "pipeline/packed_rows.h"
#include "pipeline/row_steps.h"
#include "reference/geometry.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

// A position that is off by its last bit can be rounded to the next 1/32 of a pixel, which noise shows.
TEST(Perspective, SamplesTheReferencesPositions) {
  for (const cv::Size size : {cv::Size(2100, 400), cv::Size(2100, 5)}) {
    const cv::Mat working = test::WorkingNoise(size);
    for (const float amount : {3.0F, 17.0F, 60.0F, 100.0F}) {
      Adjustments adjustments;
      adjustments.perspective_h = amount;
      adjustments.perspective_v = 0.7F * amount;
      cv::Mat expected = working.clone();
      reference::Geometry(expected, adjustments);
      cv::Mat corrected(size, CV_32FC4);
      const FrameTransform perspective =
          Perspective(size, adjustments.perspective_h, adjustments.perspective_v);
      RunRowSteps(Transformed(working, perspective), {}, StoreIn(corrected));
      EXPECT_LT(cv::norm(corrected, expected, cv::NORM_INF), 1e-6) << size << ' ' << amount;
    }
  }
}

}  // namespace
}  // namespace lumvik
