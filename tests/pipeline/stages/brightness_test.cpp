#include "pipeline/stages/brightness.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace lumvik {
namespace {

TEST(BrightnessExponent, RunsFromTwoToTwoThirds) {
  EXPECT_EQ(BrightnessExponent(-100), 2.0F);
  EXPECT_FLOAT_EQ(BrightnessExponent(100), 2.0F / 3.0F);
}

TEST(BrightnessExponent, IsBounded) {
  for (const float brightness : {-200.0F, -190.0F, -181.0F}) EXPECT_EQ(BrightnessExponent(brightness), 10.0F);
  EXPECT_FLOAT_EQ(BrightnessExponent(-180), 10.0F);
  for (const float brightness : {-201.0F, -1000.0F, 1e6F}) EXPECT_EQ(BrightnessExponent(brightness), 0.1F);
  EXPECT_TRUE(std::isnan(BrightnessExponent(std::numeric_limits<float>::quiet_NaN())));
}

TEST(Brightness, IsTheIdentityWhenTheExponentIsOne) {
  EXPECT_TRUE(Brightness(1e-7F).IsIdentity());
  EXPECT_FALSE(Brightness(0.01F).IsIdentity());
  EXPECT_FALSE(Brightness(std::numeric_limits<float>::quiet_NaN()).IsIdentity());
}

}  // namespace
}  // namespace lumvik
