#include "reference/hsl_color.h"

#include <gtest/gtest.h>

#include <cmath>

namespace lumvik::reference {
namespace {

struct Sample {
  Rgb rgb;
  Hsl hsl;
};

// One color a sector, on both sides of lightness 0.5.
const Sample kSamples[] = {
    {{1, 0, 0}, {0, 1, 0.5F}},
    {{1, 0.5F, 0}, {1 / 12.0F, 1, 0.5F}},
    {{0.5F, 1, 0}, {0.25F, 1, 0.5F}},
    {{0, 1, 0.5F}, {5 / 12.0F, 1, 0.5F}},
    {{0, 0.5F, 1}, {7 / 12.0F, 1, 0.5F}},
    {{0.5F, 0, 1}, {0.75F, 1, 0.5F}},
    {{1, 0, 0.5F}, {11 / 12.0F, 1, 0.5F}},
    {{0.6F, 0.2F, 0.2F}, {0, 0.5F, 0.4F}},
    {{0.8F, 0.8F, 0.4F}, {1 / 6.0F, 0.5F, 0.6F}},
};

TEST(HslColor, RgbToHsl) {
  for (const Sample& sample : kSamples) {
    const Hsl hsl = rgb_to_hsl(sample.rgb.r, sample.rgb.g, sample.rgb.b);
    EXPECT_NEAR(hsl.h, sample.hsl.h, 1e-6);
    EXPECT_NEAR(hsl.s, sample.hsl.s, 1e-6);
    EXPECT_NEAR(hsl.l, sample.hsl.l, 1e-6);
  }
}

TEST(HslColor, HslToRgb) {
  for (const Sample& sample : kSamples) {
    const Rgb rgb = hsl_to_rgb(sample.hsl.h, sample.hsl.s, sample.hsl.l);
    EXPECT_NEAR(rgb.r, sample.rgb.r, 1e-6);
    EXPECT_NEAR(rgb.g, sample.rgb.g, 1e-6);
    EXPECT_NEAR(rgb.b, sample.rgb.b, 1e-6);
  }
}

TEST(HslColor, GrayHasNoHue) {
  const Hsl hsl = rgb_to_hsl(0.3F, 0.3F, 0.3F + 9e-7F);
  EXPECT_EQ(hsl.h, 0.0F);
  EXPECT_EQ(hsl.s, 0.0F);
  EXPECT_EQ(rgb_to_hsl(0, 0, 0.95e-6F).s, 0.0F);
  EXPECT_GT(rgb_to_hsl(0, 0, 1.05e-6F).s, 0.0F);
}

TEST(HslColor, ComponentsAreClamped) {
  const Rgb rgb = hsl_to_rgb(0, 2, 0.5F);
  EXPECT_EQ(rgb.r, 1.0F);
  EXPECT_EQ(rgb.g, 0.0F);
  EXPECT_EQ(rgb.b, 0.0F);
}

TEST(HslColor, HuesOutsideATurn) {
  // A whole turn further is the same sector; a negative hue counts as the last sector.
  const Rgb further = hsl_to_rgb(1.25F, 1, 0.5F);
  EXPECT_NEAR(further.r, 0.5, 1e-5);
  EXPECT_NEAR(further.g, 1, 1e-5);
  EXPECT_NEAR(further.b, 0, 1e-5);
  // 6h = -1.5: fmod(-1.5, 2) = -1.5, X = C (1 - 2.5) < 0, so blue is clamped away.
  const Rgb negative = hsl_to_rgb(-0.25F, 1, 0.5F);
  EXPECT_EQ(negative.r, 1.0F);
  EXPECT_EQ(negative.g, 0.0F);
  EXPECT_EQ(negative.b, 0.0F);
  // A hue beyond the range of integers and a NaN have no sector of their own.
  EXPECT_EQ(hsl_to_rgb(1e30F, 1, 0.5F).r, 1.0F);
  EXPECT_TRUE(std::isnan(hsl_to_rgb(NAN, 1, 0.5F).b));
}

}  // namespace
}  // namespace lumvik::reference
