#include "pipeline/develop_pipeline.h"

#include <gtest/gtest.h>

#include <limits>
#include <opencv2/core/utility.hpp>
#include <random>

#include "reference/develop_pipeline.h"
#include "support/random_adjustments.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;
using test::NoiseImage;
using test::SameBytes;

cv::Mat Developed(const cv::Mat& source, const Adjustments& adjustments) {
  cv::Mat rendered;
  DevelopPipeline(source, adjustments, rendered);
  return rendered;
}

TEST(DevelopPipeline, NeutralSettingsKeepEveryValue) {
  const cv::Mat source = NoiseImage({301, 203}, 1);
  const cv::Mat rendered = Developed(source, NeutralAdjustments());
  EXPECT_TRUE(SameBytes(rendered, source));
  EXPECT_NE(rendered.data, source.data);
}

TEST(DevelopPipeline, DefaultSettingsChangeColors) {
  const cv::Mat source(2, 2, CV_16UC4, cv::Scalar(20000, 20000, 20000, 65535));
  const auto pixel = Developed(source, Adjustments()).at<cv::Vec4w>(0, 0);
  EXPECT_NEAR(pixel[0], 20000 * 1.144, 10);
  EXPECT_EQ(pixel[1], 20000);
  EXPECT_NEAR(pixel[2], 20000 * 1.133, 10);
  EXPECT_EQ(pixel[3], 65535);
}

TEST(DevelopPipeline, WhiteBalanceIsDisabledOnlyNear6500) {
  const cv::Mat source = NoiseImage({9, 9}, 2);
  const auto keeps = [&source](float temperature, float tint) {
    Adjustments adjustments;
    adjustments.temperature = temperature;
    adjustments.tint = tint;
    return SameBytes(Developed(source, adjustments), source);
  };
  EXPECT_TRUE(keeps(6500, 0));
  EXPECT_TRUE(keeps(6500.9F, 0.09F));
  EXPECT_TRUE(keeps(6499.1F, -0.09F));
  EXPECT_FALSE(keeps(6501, 0));
  EXPECT_FALSE(keeps(6499, 0));
  EXPECT_FALSE(keeps(6500, 0.1F));
  EXPECT_FALSE(keeps(6504, 0));
  EXPECT_FALSE(keeps(6500, std::numeric_limits<float>::quiet_NaN()));
}

TEST(DevelopPipeline, EmptySourceLeavesTheEarlierRender) {
  cv::Mat rendered = NoiseImage({4, 4}, 5);
  const cv::Mat before = rendered.clone();
  DevelopPipeline(cv::Mat(), Adjustments(), rendered);
  EXPECT_TRUE(SameBytes(rendered, before));
}

TEST(DevelopPipeline, NeverChangesTheSource) {
  const cv::Mat source = NoiseImage({50, 40}, 6);
  const cv::Mat before = source.clone();
  Adjustments adjustments;
  adjustments.exposure = 1;
  Developed(source, adjustments);
  EXPECT_TRUE(SameBytes(source, before));
}

TEST(DevelopPipeline, OverwritesTheEarlierRenderWhereItFits) {
  const cv::Mat source = NoiseImage({50, 40}, 7);
  cv::Mat rendered;
  DevelopPipeline(source, NeutralAdjustments(), rendered);
  const uchar* pixels = rendered.data;
  DevelopPipeline(NoiseImage({50, 40}, 8), NeutralAdjustments(), rendered);
  EXPECT_EQ(rendered.data, pixels);
  EXPECT_TRUE(SameBytes(rendered, NoiseImage({50, 40}, 8)));
}

TEST(DevelopPipeline, LeavesPixelsThatSomeoneElseHolds) {
  const cv::Mat source = NoiseImage({50, 40}, 7);
  cv::Mat rendered;
  DevelopPipeline(source, NeutralAdjustments(), rendered);
  const cv::Mat held = rendered;
  DevelopPipeline(NoiseImage({50, 40}, 8), NeutralAdjustments(), rendered);
  EXPECT_NE(rendered.data, held.data);
  EXPECT_TRUE(SameBytes(held, source));
  EXPECT_TRUE(SameBytes(rendered, NoiseImage({50, 40}, 8)));
}

TEST(DevelopPipeline, LeavesThePixelsOfACaller) {
  cv::Mat owned = NoiseImage({50, 40}, 7);
  cv::Mat rendered(owned.size(), owned.type(), owned.data);
  DevelopPipeline(NoiseImage({50, 40}, 8), NeutralAdjustments(), rendered);
  EXPECT_NE(rendered.data, owned.data);
  EXPECT_TRUE(SameBytes(owned, NoiseImage({50, 40}, 7)));
}

TEST(DevelopPipeline, ReplacesAnEarlierRenderOfAnotherSizeOrType) {
  const cv::Mat source = NoiseImage({50, 40}, 7);
  for (cv::Mat rendered : {NoiseImage({40, 50}, 1), NoiseImage({50, 41}, 1), test::WorkingNoise({50, 40})}) {
    DevelopPipeline(source, NeutralAdjustments(), rendered);
    EXPECT_TRUE(SameBytes(rendered, source));
  }
}

// Settings of the tone stages, some of them far beyond the sliders.
Adjustments RandomAdjustments(std::mt19937& random) {
  const auto within = [&random](float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
  };
  const auto is_active = [&random] { return random() % 3 != 0; };
  const float scale = random() % 5 == 0 ? 4.0F : 1.0F;
  Adjustments adjustments;
  if (is_active()) adjustments.temperature = within(1500, 26000);
  if (is_active()) adjustments.tint = within(-150, 150) * scale;
  if (is_active()) adjustments.exposure = within(-3, 3) * scale;
  if (is_active()) adjustments.brightness = within(-100, 100) * scale;
  if (is_active()) adjustments.contrast = within(-100, 100) * scale;
  return adjustments;
}

TEST(DevelopPipeline, StaysWithinTwoCodesOfTheReference) {
  std::mt19937 random(20);
  const cv::Mat photograph = test::Photograph("cat.jpg", 300);
  int largest = 0;
  for (int run = 0; run < 200; ++run) {
    const Adjustments adjustments = RandomAdjustments(random);
    const cv::Mat source = run % 2 == 0
                               ? photograph
                               : NoiseImage(test::OddSizes()[random() % test::OddSizes().size()], random());
    const auto difference =
        test::Compare(Developed(source, adjustments), reference::DevelopPipeline(source, adjustments), 2);
    EXPECT_LE(difference.largest, 2) << "run " << run;
    largest = std::max(largest, difference.largest);
  }
  std::printf("largest difference to the reference: %d of 65535\n", largest);
}

TEST(DevelopPipeline, EachStageAloneStaysWithinOneCode) {
  const cv::Mat source = NoiseImage({257, 129}, 9);
  for (const auto& [field, values] :
       {std::pair{&Adjustments::exposure, std::vector<float>{-10, -1, 0.3F, 2, 10}},
        std::pair{&Adjustments::brightness,
                  std::vector<float>{-1000, -201, -190, -100, -50, 1e-3F, 50, 100, 400}},
        std::pair{&Adjustments::contrast, std::vector<float>{-1000, -100, -30, 1e-4F, 30, 100, 1000}}}) {
    for (const float value : values) {
      Adjustments adjustments = NeutralAdjustments();
      adjustments.*field = value;
      const auto difference =
          test::Compare(Developed(source, adjustments), reference::DevelopPipeline(source, adjustments), 1);
      EXPECT_LE(difference.largest, 1) << value;
    }
  }
}

TEST(DevelopPipeline, GivesTheSameBytesForAnyNumberOfThreads) {
  Adjustments adjustments;
  adjustments.exposure = 0.7F;
  adjustments.brightness = 20;
  adjustments.contrast = -15;
  const int usual = cv::getNumThreads();
  for (const cv::Size size : test::OddSizes()) {
    const cv::Mat source = NoiseImage(size, 77);
    cv::setNumThreads(1);
    const cv::Mat expected = Developed(source, adjustments);
    for (const int threads : {2, 3, 4}) {
      cv::setNumThreads(threads);
      EXPECT_TRUE(SameBytes(Developed(source, adjustments), expected)) << threads << " threads, " << size;
    }
  }
  cv::setNumThreads(usual);
}

}  // namespace
}  // namespace lumvik
