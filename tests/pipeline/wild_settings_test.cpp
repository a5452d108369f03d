// Settings far beyond their ranges, on images wider than a row part.
#include <gtest/gtest.h>

#include <limits>
#include <opencv2/core/utility.hpp>
#include <random>

#include "pipeline/develop_pipeline.h"
#include "pipeline/row_part.h"
#include "reference/develop_pipeline.h"
#include "support/random_adjustments.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using Limits = std::numeric_limits<float>;
constexpr int kWideColumns = 2 * kMaxPart + 300;

cv::Mat WildlyDeveloped(const cv::Mat& source, const Adjustments& adjustments) {
  cv::Mat rendered;
  DevelopPipeline(source, adjustments, rendered);
  return rendered;
}

double ShareBeyond(const cv::Mat& source, const Adjustments& adjustments, int codes) {
  const cv::Mat expected = reference::DevelopPipeline(source, adjustments);
  return test::Compare(WildlyDeveloped(source, adjustments), expected, codes).share_above;
}

// Kernels keep a row part on the stack, so a wide blur must not make them read more than that.
TEST(WildSettings, AWideBlurAfterAPointStageStaysWithinARowPart) {
  const cv::Mat source = test::NoiseImage({kWideColumns, 9}, 3);
  for (const float luminance : {1000.0F, 4200.0F, 8000.0F, 1e5F}) {
    for (const float color : {0.0F, 4200.0F}) {
      Adjustments adjustments = test::NeutralAdjustments();
      test::SetToneCurves(adjustments, 3);
      adjustments.shadows = 40;
      adjustments.hsl[2].saturation = 30;
      adjustments.nr_luminance = luminance;
      adjustments.nr_color = color;
      const cv::Mat rendered = WildlyDeveloped(source, adjustments);
      EXPECT_EQ(rendered.size(), source.size());
      EXPECT_GT(cv::norm(rendered, source, cv::NORM_INF), 0) << luminance << ' ' << color;
    }
  }
}

TEST(WildSettings, ColorNoiseReductionWithAWideKernelIsTheReferences) {
  const cv::Mat source = test::NoiseImage({kWideColumns, 40}, 3);
  Adjustments adjustments = test::NeutralAdjustments();
  for (const float color : {1275.0F, 1300.0F, 5000.0F}) {
    adjustments.nr_color = color;
    // 4e-4 of full scale is 26 codes: the edge of a cut-off kernel.
    EXPECT_EQ(ShareBeyond(source, adjustments, 26), 0.0) << color;
  }
}

// 0 times infinity is NaN, which ends as black, also where a pixel has no detail.
TEST(WildSettings, AnAmountOfSharpeningThatIsNotFiniteBlackensWhatHasNoDetail) {
  cv::Mat source(40, kWideColumns, CV_16UC4, cv::Scalar(20000, 30000, 40000, 65535));
  source.colRange(0, kWideColumns / 2).setTo(cv::Scalar(50000, 10000, 30000, 65535));
  for (const float amount : {Limits::quiet_NaN(), Limits::infinity()}) {
    for (const float radius : {1.0F, 20.0F}) {
      Adjustments adjustments = test::NeutralAdjustments();
      adjustments.sharpening_amount = amount;
      adjustments.sharpening_radius = radius;
      adjustments.sharpening_threshold = 500;
      const cv::Mat rendered = WildlyDeveloped(source, adjustments);
      EXPECT_EQ(rendered.at<cv::Vec4w>(20, 10), cv::Vec4w(0, 0, 0, 65535)) << amount << ' ' << radius;
      EXPECT_EQ(ShareBeyond(source, adjustments, 0), 0.0) << amount << ' ' << radius;
    }
  }
}

// The blur is made on a grid beyond a certain width, so neither time nor memory grow with the setting.
TEST(WildSettings, GrainOfAnySizeKeepsItsStrengthOrVanishes) {
  const cv::Mat source(300, 400, CV_16UC4, cv::Scalar(32768, 32768, 32768, 65535));
  Adjustments adjustments = test::NeutralAdjustments();
  adjustments.grain_amount = 100;
  const auto deviation = [&](float size) {
    adjustments.grain_size = size;
    cv::Scalar mean;
    cv::Scalar codes;
    cv::meanStdDev(WildlyDeveloped(source, adjustments), mean, codes);
    return codes[0] / 65535;
  };
  for (const float size : {0.0F, 100.0F, 800.0F}) EXPECT_NEAR(deviation(size), 0.05, 0.002) << size;
  for (const float size : {1e7F, 1e30F, Limits::infinity()}) EXPECT_LT(deviation(size), 0.002) << size;
}

}  // namespace
}  // namespace lumvik
