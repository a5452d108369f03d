// Worked examples of the whole pipeline, and of the two stages that the reference implements in its driver.
#include <gtest/gtest.h>

#include <cmath>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;
using test::NoiseImage;
using test::SamePixels;

class DevelopPipelineExample
    : public test::Example<ImageBuffer(const ImageBuffer& source, const Adjustments& adjustments)> {
 protected:
  ImageBuffer Rendered(const ImageBuffer& source, const Adjustments& adjustments) const {
    return GetParam().run(source, adjustments);
  }

  cv::Vec4w OnCode(const Adjustments& adjustments, const cv::Vec4w& color) const {
    const ImageBuffer source(1, 1, CV_16UC4, cv::Scalar(color));
    return Rendered(source, adjustments).at<cv::Vec4w>(0, 0);
  }
};

ImageBuffer RenderedByEngine(const ImageBuffer& source, const Adjustments& adjustments) {
  ImageBuffer rendered;
  DevelopPipeline(source, adjustments, rendered);
  return rendered;
}

class BrightnessExample : public test::PointStageExample {
 protected:
  cv::Vec4f Brightened(const cv::Vec4f& color, float brightness) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.brightness = brightness;
    return Developed(color, adjustments);
  }
};

class ContrastExample : public test::PointStageExample {
 protected:
  cv::Vec4f Contrasted(const cv::Vec4f& color, float contrast) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.contrast = contrast;
    return Developed(color, adjustments);
  }
};

TEST_P(DevelopPipelineExample, EmptySourceGivesNothing) {
  EXPECT_TRUE(Rendered({}, NeutralAdjustments()).empty());
}

TEST_P(DevelopPipelineExample, NeutralKeepsEveryCode) {
  ImageBuffer every_code(256, 256, CV_16UC4);
  for (int i = 0; i < 65536; ++i) {
    const auto code = static_cast<ushort>(i);
    const auto inverse = static_cast<ushort>(65535 - i);
    every_code.at<cv::Vec4w>(i / 256, i % 256) = {code, inverse, static_cast<ushort>(i ^ 0x5555), code};
  }
  const ImageBuffer before = every_code.clone();
  const ImageBuffer rendered = Rendered(every_code, NeutralAdjustments());
  EXPECT_TRUE(SamePixels(rendered, before));
  EXPECT_NE(rendered.data, every_code.data);
  EXPECT_TRUE(SamePixels(every_code, before));
}

TEST_P(DevelopPipelineExample, DefaultsChangeTheColors) {
  const cv::Vec4w pixel = OnCode(Adjustments(), {20000, 20000, 20000, 65535});
  EXPECT_NEAR(pixel[0], 20000 * 1.144, 20000 * 5e-4);
  EXPECT_EQ(pixel[1], 20000);
  EXPECT_NEAR(pixel[2], 20000 * 1.133, 20000 * 5e-4);
  EXPECT_EQ(pixel[3], 65535);
}

TEST_P(DevelopPipelineExample, WhiteBalanceIsDisabledAroundItsNeutralPoint) {
  const cv::Vec4w gray(20000, 20000, 20000, 65535);
  Adjustments adjustments = NeutralAdjustments();
  EXPECT_EQ(OnCode(adjustments, gray), gray);
  adjustments.temperature = 6500.9F;
  EXPECT_EQ(OnCode(adjustments, gray), gray);
  adjustments.temperature = 6501;
  EXPECT_NE(OnCode(adjustments, gray), gray);
  adjustments.temperature = 6499;
  EXPECT_NE(OnCode(adjustments, gray), gray);
  adjustments.temperature = 6499.1F;
  EXPECT_EQ(OnCode(adjustments, gray), gray);
  adjustments = NeutralAdjustments();
  adjustments.tint = 0.09F;
  EXPECT_EQ(OnCode(adjustments, gray), gray);
  adjustments.tint = 0.1F;
  EXPECT_NE(OnCode(adjustments, gray), gray);
  adjustments.tint = -0.1F;
  EXPECT_NE(OnCode(adjustments, gray), gray);
}

TEST_P(DevelopPipelineExample, NanSettingsAreNotSkipped) {
  const cv::Vec4w gray(20000, 20000, 20000, 65535);
  for (float Adjustments::*field :
       {&Adjustments::temperature, &Adjustments::exposure, &Adjustments::brightness, &Adjustments::contrast,
        &Adjustments::saturation}) {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.*field = NAN;
    EXPECT_EQ(OnCode(adjustments, gray)[0], 0) << "NaN ends as black";
  }
}

TEST_P(BrightnessExample, IsAPowerFunction) {
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

TEST_P(BrightnessExample, TakesTheMagnitudeAndDoesNotClamp) {
  const cv::Vec4f pixel = Brightened({1.5F, -0.25F, 0.5F, 1}, 100);
  EXPECT_NEAR(pixel[0], std::pow(1.5, 2.0 / 3.0), 1e-6);
  EXPECT_NEAR(pixel[1], std::pow(0.25, 2.0 / 3.0), 1e-6);
}

TEST_P(BrightnessExample, AnExponentOfOneKeepsEveryBit) {
  const cv::Vec4f over(1.5F, 0.1F, 0.123456F, 1);
  EXPECT_EQ(Brightened(over, 0), over);
  EXPECT_EQ(Brightened(over, 1e-7F), over);
  EXPECT_NE(Brightened(over, 0.01F), over);
}

TEST_P(BrightnessExample, ExponentIsBounded) {
  for (const float brightness : {-180.0F, -190.0F, -200.0F}) {
    EXPECT_NEAR(Brightened({0.9F, 0.9F, 0.9F, 1}, brightness)[0], std::pow(0.9, 10), 1e-6) << brightness;
  }
  for (const float brightness : {-201.0F, -400.0F, 5000.0F}) {
    EXPECT_NEAR(Brightened({0.5F, 0.5F, 0.5F, 1}, brightness)[0], std::pow(0.5, 0.1), 1e-6) << brightness;
  }
}

TEST_P(ContrastExample, JumpsAwayFromNeutral) {
  const cv::Vec4f slight = Contrasted({1, 0, 0.5F, 0.3F}, 0.0001F);
  EXPECT_NEAR(slight[0], 0.9167, 5e-5);
  EXPECT_NEAR(slight[1], 0.0833, 5e-5);
  EXPECT_NEAR(slight[2], 0.5, 1e-6);
  EXPECT_EQ(slight[3], 0.3F);
}

TEST_P(ContrastExample, SteepnessAndClamp) {
  // k = 1.8: t = 0.9, 0.9 / 1.36 + 0.5 is above 1.
  EXPECT_EQ(Contrasted({1, 0, 0, 1}, 100), cv::Vec4f(1, 0, 0, 1));
  EXPECT_NEAR(Contrasted({0.6F, 0.6F, 0.6F, 1}, 100)[0], 0.18 / (0.18 * 0.4 + 1) + 0.5, 1e-6);
  // k = 1.24: -0.62 / 1.248 + 0.5.
  EXPECT_NEAR(Contrasted({0, 0, 0, 1}, 30)[0], 0.003205, 1e-6);
  EXPECT_NEAR(Contrasted({1, 1, 1, 1}, -90)[0], 0.14 / 1.056 + 0.5, 1e-6);
  // k reaches its minimum 0.2 at -100.
  EXPECT_NEAR(Contrasted({1, 1, 1, 1}, -100)[0], 0.1 / 1.04 + 0.5, 1e-6);
  EXPECT_EQ(Contrasted({1, 1, 1, 1}, -500), Contrasted({1, 1, 1, 1}, -100));
}

TEST_P(DevelopPipelineExample, CropComesAfterTheFlip) {
  ImageBuffer source(20, 40, CV_16UC4, cv::Scalar(0, 0, 0, 65535));
  source.colRange(0, 20).setTo(cv::Scalar(65535, 0, 0, 65535));
  Adjustments adjustments = NeutralAdjustments();
  adjustments.flip_h = 1;
  adjustments.crop = {0.5F, 0, 0.5F, 1};
  const ImageBuffer rendered = Rendered(source, adjustments);
  ASSERT_EQ(rendered.size(), cv::Size(20, 20));
  EXPECT_TRUE(SamePixels(rendered, source.colRange(0, 20).clone()));
}

TEST_P(DevelopPipelineExample, VignetteFollowsTheCroppedFrame) {
  const ImageBuffer source(40, 40, CV_16UC4, cv::Scalar(20000, 20000, 20000, 65535));
  Adjustments adjustments = NeutralAdjustments();
  adjustments.crop = {0.25F, 0.25F, 0.5F, 0.5F};
  adjustments.vignette_amount = 100;
  adjustments.vignette_midpoint = 0;
  const ImageBuffer rendered = Rendered(source, adjustments);
  ASSERT_EQ(rendered.size(), cv::Size(20, 20));
  EXPECT_EQ(rendered.at<cv::Vec4w>(0, 0), cv::Vec4w(65535, 65535, 65535, 65535));
  EXPECT_EQ(rendered.at<cv::Vec4w>(10, 10), cv::Vec4w(20000, 20000, 20000, 65535));
}

TEST_P(DevelopPipelineExample, ExceptionOfAStageLeaves) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.sharpening_amount = 50;
  adjustments.sharpening_radius = 0;
  EXPECT_THROW(Rendered(NoiseImage({8, 8}, 7), adjustments), cv::Exception);
}

// Each setting alone changes an image, however small it is.
TEST_P(DevelopPipelineExample, EverySettingEnablesItsStage) {
  const ImageBuffer source = NoiseImage({32, 24}, 7);
  const auto changes = [&](auto&& set) {
    Adjustments adjustments = NeutralAdjustments();
    set(adjustments);
    return !SamePixels(Rendered(source, adjustments), source);
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

INSTANTIATE_TEST_SUITE_P(Subjects, DevelopPipelineExample,
                         test::ReferenceAndEngine(reference::DevelopPipeline, RenderedByEngine),
                         test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, BrightnessExample, test::StageSubjects(), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, ContrastExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
