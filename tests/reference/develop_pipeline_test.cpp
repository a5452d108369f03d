#include "reference/develop_pipeline.h"

#include <gtest/gtest.h>

#include <cmath>

#include "reference/pixel.h"

namespace lumvik::reference {
namespace {

// Nothing at all is awake; the defaults leave the white balance on.
Adjustments Neutral() {
  Adjustments adjustments;
  adjustments.temperature = 6500;
  return adjustments;
}

ImageBuffer RandomImage(int columns, int rows) {
  ImageBuffer image(rows, columns, CV_16UC4);
  cv::RNG rng(7);
  rng.fill(image, cv::RNG::UNIFORM, 0, 65536);
  return image;
}

cv::Vec4w OnCode(const Adjustments& adjustments, const cv::Vec4w& color) {
  const ImageBuffer source(1, 1, CV_16UC4, cv::Scalar(color));
  return DevelopPipeline(source, adjustments).at<cv::Vec4w>(0, 0);
}

cv::Vec4f Brightened(const cv::Vec4f& color, float brightness) {
  cv::Mat working = Uniform(1, 1, color);
  Brightness(working, brightness);
  return working.at<cv::Vec4f>(0, 0);
}

cv::Vec4f Contrasted(const cv::Vec4f& color, float contrast) {
  cv::Mat working = Uniform(1, 1, color);
  Contrast(working, contrast);
  return working.at<cv::Vec4f>(0, 0);
}

TEST(DevelopPipeline, EmptySourceGivesNothing) {
  EXPECT_TRUE(DevelopPipeline({}, Adjustments()).empty());
}

TEST(DevelopPipeline, NeutralKeepsEveryCode) {
  ImageBuffer every_code(256, 256, CV_16UC4);
  for (int i = 0; i < 65536; ++i) {
    const auto code = static_cast<ushort>(i);
    const auto inverse = static_cast<ushort>(65535 - i);
    every_code.at<cv::Vec4w>(i / 256, i % 256) = {code, inverse, static_cast<ushort>(i ^ 0x5555), code};
  }
  const ImageBuffer before = every_code.clone();
  const ImageBuffer rendered = DevelopPipeline(every_code, Neutral());
  EXPECT_TRUE(SamePixels(rendered, before));
  EXPECT_NE(rendered.data, every_code.data);
  EXPECT_TRUE(SamePixels(every_code, before));
}

TEST(DevelopPipeline, DefaultsChangeTheColors) {
  const cv::Vec4w pixel = OnCode(Adjustments(), {20000, 20000, 20000, 65535});
  EXPECT_NEAR(pixel[0], 20000 * 1.144, 20000 * 5e-4);
  EXPECT_EQ(pixel[1], 20000);
  EXPECT_NEAR(pixel[2], 20000 * 1.133, 20000 * 5e-4);
  EXPECT_EQ(pixel[3], 65535);
}

TEST(DevelopPipeline, WhiteBalanceSleepsAroundItsNeutralPoint) {
  const cv::Vec4w gray(20000, 20000, 20000, 65535);
  Adjustments adjustments = Neutral();
  EXPECT_EQ(OnCode(adjustments, gray), gray);
  adjustments.temperature = 6500.9F;
  EXPECT_EQ(OnCode(adjustments, gray), gray);
  adjustments.temperature = 6501;
  EXPECT_NE(OnCode(adjustments, gray), gray);
  adjustments.temperature = 6499;
  EXPECT_NE(OnCode(adjustments, gray), gray);
  adjustments = Neutral();
  adjustments.tint = 0.09F;
  EXPECT_EQ(OnCode(adjustments, gray), gray);
  adjustments.tint = -0.1F;
  EXPECT_NE(OnCode(adjustments, gray), gray);
}

TEST(DevelopPipeline, NanSettingsAreNotSkipped) {
  const cv::Vec4w gray(20000, 20000, 20000, 65535);
  for (float Adjustments::*field :
       {&Adjustments::temperature, &Adjustments::exposure, &Adjustments::brightness, &Adjustments::contrast,
        &Adjustments::saturation}) {
    Adjustments adjustments = Neutral();
    adjustments.*field = NAN;
    EXPECT_EQ(OnCode(adjustments, gray)[0], 0) << "a NaN ends as black";
  }
}

TEST(DevelopPipeline, BrightnessIsAPower) {
  const cv::Vec4f color(0.25F, 0.5F, 0.8F, 0.3F);
  const cv::Vec4f dark = Brightened(color, -100);
  const cv::Vec4f bright = Brightened(color, 100);
  for (int c = 0; c < 3; ++c) {
    EXPECT_NEAR(dark[c], color[c] * color[c], 1e-6);
    EXPECT_NEAR(bright[c], std::pow(color[c], 2.0 / 3.0), 1e-6);
  }
  EXPECT_EQ(dark[3], 0.3F);
  EXPECT_EQ(bright[3], 0.3F);
}

TEST(DevelopPipeline, BrightnessExponentIsHeldToItsBounds) {
  for (const float brightness : {-180.0F, -190.0F, -200.0F}) {
    EXPECT_NEAR(Brightened({0.9F, 0.9F, 0.9F, 1}, brightness)[0], std::pow(0.9, 10), 1e-6) << brightness;
  }
  for (const float brightness : {-201.0F, -400.0F, 5000.0F}) {
    EXPECT_NEAR(Brightened({0.5F, 0.5F, 0.5F, 1}, brightness)[0], std::pow(0.5, 0.1), 1e-6) << brightness;
  }
}

TEST(DevelopPipeline, ContrastJumpsAwayFromNeutral) {
  const cv::Vec4f slight = Contrasted({1, 0, 0.5F, 0.3F}, 0.0001F);
  EXPECT_NEAR(slight[0], 0.9167, 5e-5);
  EXPECT_NEAR(slight[1], 0.0833, 5e-5);
  EXPECT_NEAR(slight[2], 0.5, 1e-6);
  EXPECT_EQ(slight[3], 0.3F);
  Adjustments adjustments = Neutral();
  adjustments.contrast = 0.0001F;
  EXPECT_NEAR(OnCode(adjustments, {65535, 0, 0, 65535})[0], 0.9167 * 65535, 4);
}

TEST(DevelopPipeline, ContrastSteepnessAndClamp) {
  // k = 1.8: t = 0.9, 0.9 / 1.36 + 0.5 is above 1.
  EXPECT_EQ(Contrasted({1, 0, 0, 1}, 100), cv::Vec4f(1, 0, 0, 1));
  EXPECT_NEAR(Contrasted({0.6F, 0.6F, 0.6F, 1}, 100)[0], 0.18 / (0.18 * 0.4 + 1) + 0.5, 1e-6);
  // k = 1.24: -0.62 / 1.248 + 0.5.
  EXPECT_NEAR(Contrasted({0, 0, 0, 1}, 30)[0], 0.003205, 1e-6);
  // k falls to its floor 0.2 at -100 and stays there.
  EXPECT_NEAR(Contrasted({1, 1, 1, 1}, -100)[0], 0.1 / 1.04 + 0.5, 1e-6);
  EXPECT_EQ(Contrasted({1, 1, 1, 1}, -500), Contrasted({1, 1, 1, 1}, -100));
}

TEST(DevelopPipeline, CropComesAfterTheFlip) {
  ImageBuffer source(20, 40, CV_16UC4, cv::Scalar(0, 0, 0, 65535));
  source.colRange(0, 20).setTo(cv::Scalar(65535, 0, 0, 65535));
  Adjustments adjustments = Neutral();
  adjustments.flip_h = 1;
  adjustments.crop = {0.5F, 0, 0.5F, 1};
  const ImageBuffer rendered = DevelopPipeline(source, adjustments);
  ASSERT_EQ(rendered.size(), cv::Size(20, 20));
  EXPECT_TRUE(SamePixels(rendered, source.colRange(0, 20).clone()));
}

TEST(DevelopPipeline, VignetteFollowsTheCroppedFrame) {
  const ImageBuffer source(40, 40, CV_16UC4, cv::Scalar(20000, 20000, 20000, 65535));
  Adjustments adjustments = Neutral();
  adjustments.crop = {0.25F, 0.25F, 0.5F, 0.5F};
  adjustments.vignette_amount = 100;
  adjustments.vignette_midpoint = 0;
  const ImageBuffer rendered = DevelopPipeline(source, adjustments);
  ASSERT_EQ(rendered.size(), cv::Size(20, 20));
  EXPECT_EQ(rendered.at<cv::Vec4w>(0, 0), cv::Vec4w(65535, 65535, 65535, 65535));
  EXPECT_EQ(rendered.at<cv::Vec4w>(10, 10), cv::Vec4w(20000, 20000, 20000, 65535));
}

TEST(DevelopPipeline, ErrorOfAStageLeaves) {
  Adjustments adjustments = Neutral();
  adjustments.sharpening_amount = 50;
  adjustments.sharpening_radius = 0;
  EXPECT_THROW(DevelopPipeline(RandomImage(8, 8), adjustments), cv::Exception);
}

// Each of the eighteen steps is wired: its setting alone changes a picture, however faint.
TEST(DevelopPipeline, EveryStepIsAwakenedByItsSettings) {
  const ImageBuffer source = RandomImage(32, 24);
  const auto changes = [&](auto&& set) {
    Adjustments adjustments = Neutral();
    set(adjustments);
    return !SamePixels(DevelopPipeline(source, adjustments), source);
  };
  using A = Adjustments;
  EXPECT_FALSE(changes([](A&) {}));
  EXPECT_TRUE(changes([](A& a) { a.temperature = 6400; }));
  for (float A::*field : {&A::tint,          &A::exposure,      &A::brightness,      &A::highlights,
                          &A::shadows,       &A::whites,        &A::blacks,          &A::contrast,
                          &A::clarity,       &A::texture,       &A::dehaze,          &A::saturation,
                          &A::vibrance,      &A::nr_luminance,  &A::nr_color,        &A::sharpening_amount,
                          &A::distortion,    &A::lens_vignette, &A::defringe,        &A::rotation,
                          &A::perspective_h, &A::perspective_v, &A::vignette_amount, &A::grain_amount}) {
    EXPECT_TRUE(changes([&](A& a) { a.*field = 1; }));
  }
  EXPECT_TRUE(changes([](A& a) { a.tone_curves[kBlueCurve] = {{0, 0.01F}, {1, 1}}; }));
  EXPECT_TRUE(changes([](A& a) { a.hsl[5].hue = 1; }));
  EXPECT_TRUE(changes([](A& a) { a.hsl[0].saturation = 1; }));
  EXPECT_TRUE(changes([](A& a) { a.hsl[7].luminance = 1; }));
  EXPECT_TRUE(changes([](A& a) { a.split_toning.highlight_saturation = 1; }));
  EXPECT_TRUE(changes([](A& a) { a.split_toning.shadow_saturation = 1; }));
  EXPECT_TRUE(changes([](A& a) { a.flip_h = 1; }));
  EXPECT_TRUE(changes([](A& a) { a.flip_v = 1; }));
  EXPECT_TRUE(changes([](A& a) { a.crop = {0, 0, 1, 0.5F}; }));
}

}  // namespace
}  // namespace lumvik::reference
