#include "pipeline/stages/noise_reduction.h"

#include <gtest/gtest.h>

#include <limits>

namespace lumvik {
namespace {

TEST(NoiseReduction, AKernelThatOverflowsIsTheSmallest) {
  EXPECT_EQ(ColorNoiseReduction(1).blur.Radius(), 1);
  EXPECT_EQ(ColorNoiseReduction(50).blur.Radius(), 3);
  for (const float percent : {1e12F, 1e30F, std::numeric_limits<float>::infinity()}) {
    EXPECT_EQ(ColorNoiseReduction(percent).blur.Radius(), 1) << percent;
    EXPECT_EQ(LuminanceNoiseReduction(percent).blur.Radius(), 1) << percent;
  }
}

TEST(NoiseReduction, ALargePercentageMakesAWideBlurOfBoundedSize) {
  for (const float percent : {2000.0F, 1e6F, 1e9F}) {
    EXPECT_TRUE(LuminanceNoiseReduction(percent).blur.IsWide()) << percent;
    EXPECT_LE(LuminanceNoiseReduction(percent).blur.Sigma(), Gaussian::kMaxSigma) << percent;
  }
}

}  // namespace
}  // namespace lumvik
