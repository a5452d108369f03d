// Worked examples of the conversions between RGB and hue, saturation and lightness.
#include "pipeline/stages/hsl_color.h"

#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/core.hpp>

#include "examples/subject.h"
#include "reference/hsl_color.h"

namespace lumvik {
namespace {

class RgbToHslExample : public test::Example<cv::Vec3f(const cv::Vec3f& rgb)> {};
class HslToRgbExample : public test::Example<cv::Vec3f(const cv::Vec3f& hsl)> {};

cv::Vec3f ReferenceHsl(const cv::Vec3f& rgb) {
  const reference::Hsl hsl = reference::rgb_to_hsl(rgb[0], rgb[1], rgb[2]);
  return {hsl.h, hsl.s, hsl.l};
}

cv::Vec3f EngineHsl(const cv::Vec3f& rgb) {
  const HslColor hsl = lumvik::rgb_to_hsl(rgb[0], rgb[1], rgb[2]);
  return {hsl.h, hsl.s, hsl.l};
}

cv::Vec3f ReferenceRgb(const cv::Vec3f& hsl) {
  const reference::Rgb rgb = reference::hsl_to_rgb(hsl[0], hsl[1], hsl[2]);
  return {rgb.r, rgb.g, rgb.b};
}

cv::Vec3f EngineRgb(const cv::Vec3f& hsl) {
  const RgbColor rgb = lumvik::hsl_to_rgb(hsl[0], hsl[1], hsl[2]);
  return {rgb.r, rgb.g, rgb.b};
}

struct ColorSample {
  cv::Vec3f rgb;
  cv::Vec3f hsl;
};

// One color a sector, on both sides of lightness 0.5.
const ColorSample kSamples[] = {
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

TEST_P(RgbToHslExample, Samples) {
  for (const ColorSample& sample : kSamples) {
    EXPECT_LE(cv::norm(GetParam().run(sample.rgb), sample.hsl, cv::NORM_INF), 1e-6) << sample.rgb;
  }
}

TEST_P(HslToRgbExample, Samples) {
  for (const ColorSample& sample : kSamples) {
    EXPECT_LE(cv::norm(GetParam().run(sample.hsl), sample.rgb, cv::NORM_INF), 1e-6) << sample.hsl;
  }
}

TEST_P(RgbToHslExample, GrayHasNoHue) {
  const cv::Vec3f hsl = GetParam().run({0.3F, 0.3F, 0.3F + 9e-7F});
  EXPECT_EQ(hsl[0], 0.0F);
  EXPECT_EQ(hsl[1], 0.0F);
  EXPECT_EQ(GetParam().run({0, 0, 0.95e-6F})[1], 0.0F);
  EXPECT_GT(GetParam().run({0, 0, 1.05e-6F})[1], 0.0F);
}

TEST_P(HslToRgbExample, ComponentsAreClamped) {
  const cv::Vec3f rgb = GetParam().run({0, 2, 0.5F});
  EXPECT_EQ(rgb[0], 1.0F);
  EXPECT_EQ(rgb[1], 0.0F);
  EXPECT_EQ(rgb[2], 0.0F);
}

TEST_P(HslToRgbExample, HuesOutsideATurn) {
  // A whole turn further is the same sector; a negative hue counts as the last sector.
  const cv::Vec3f further = GetParam().run({1.25F, 1, 0.5F});
  EXPECT_NEAR(further[0], 0.5, 1e-5);
  EXPECT_NEAR(further[1], 1, 1e-5);
  EXPECT_NEAR(further[2], 0, 1e-5);
  // 6h = -1.5: fmod(-1.5, 2) = -1.5, X = C (1 - 2.5) < 0, so blue is clamped away.
  const cv::Vec3f negative = GetParam().run({-0.25F, 1, 0.5F});
  EXPECT_EQ(negative[0], 1.0F);
  EXPECT_EQ(negative[1], 0.0F);
  EXPECT_EQ(negative[2], 0.0F);
  // A hue beyond the range of integers and NaN have no sector.
  EXPECT_EQ(GetParam().run({1e30F, 1, 0.5F})[0], 1.0F);
  EXPECT_TRUE(std::isnan(GetParam().run({NAN, 1, 0.5F})[2]));
}

INSTANTIATE_TEST_SUITE_P(Subjects, RgbToHslExample, test::ReferenceAndEngine(ReferenceHsl, EngineHsl),
                         test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, HslToRgbExample, test::ReferenceAndEngine(ReferenceRgb, EngineRgb),
                         test::SubjectName());

}  // namespace
}  // namespace lumvik
