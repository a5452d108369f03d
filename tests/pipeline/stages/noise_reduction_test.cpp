#include "pipeline/stages/noise_reduction.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/test_images.h"

namespace lumvik {
namespace {

cv::Mat Smoothed(const AreaKernel& kernel) {
  cv::Mat image;
  test::NoiseImage({40, 30}, 3).convertTo(image, CV_32F, 1 / 65535.0);
  cv::Mat smoothed(image.size(), image.type());
  RunRowSteps(RowsOf(image), {kernel}, StoreIn(smoothed));
  return smoothed;
}

TEST(NoiseReduction, AWindowWiderThanAnyPictureIsTheSmallest) {
  const cv::Mat smallest = Smoothed(ColorNoiseReduction(1));
  EXPECT_FALSE(test::SameBytes(smallest, Smoothed(ColorNoiseReduction(50))));
  for (const float percent : {1e9F, 1e30F, std::numeric_limits<float>::infinity()}) {
    EXPECT_TRUE(test::SameBytes(Smoothed(ColorNoiseReduction(percent)), smallest)) << percent;
  }
}

}  // namespace
}  // namespace lumvik
