// Every stage, alone and in chains, compared with the reference pipeline.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <opencv2/core/utility.hpp>
#include <random>
#include <string>

#include "pipeline/develop_pipeline.h"
#include "reference/develop_pipeline.h"
#include "support/random_adjustments.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using A = Adjustments;
using test::NeutralAdjustments;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr uint64_t kGrainSeed = 41;

// Both implementations draw grain from the calling thread's generator.
cv::Mat DevelopedWithGrain(const cv::Mat& source, const Adjustments& adjustments) {
  cv::theRNG().state = kGrainSeed;
  cv::Mat rendered;
  DevelopPipeline(source, adjustments, rendered);
  return rendered;
}

cv::Mat Expected(const cv::Mat& source, const Adjustments& adjustments) {
  cv::theRNG().state = kGrainSeed;
  return reference::DevelopPipeline(source, adjustments);
}

// A stage at several strengths. Where the definition is discontinuous, the last bit can decide the side:
// there a small share of the samples may differ by any amount.
struct StageCase {
  std::string name;
  std::function<void(Adjustments&, float)> set;
  std::vector<float> strengths;
  double jump_share = 0;
};

std::vector<StageCase> StageCases() {
  const auto field = [](float Adjustments::*member) {
    return [member](Adjustments& a, float value) { a.*member = value; };
  };
  constexpr double kJumps = 0.0002;
  const std::vector<float> kPercent = {-1e6F, -250, -100, -50, -1, 0.01F, 1, 33, 100, 250, 1e6F, kNaN};
  const std::vector<float> kSlider = {-100, -50, -1, 0.01F, 1, 33, 100};
  const std::vector<float> kPositive = {-kInfinity, -5, 0.01F, 1, 33, 50, 100};
  return {
      {"temperature",
       field(&A::temperature),
       {-1, 1667, 2222, 3999, 5500, 6501, 25000, 1e9F, kInfinity, kNaN}},
      {"tint", field(&A::tint), kPercent},
      {"exposure", field(&A::exposure), {-200, -20, -5, -0.01F, 0.01F, 0.5F, 3, 20, 120, kNaN}},
      {"brightness", field(&A::brightness), {-1e6F, -250, -200, -150, -100, -50, 0.01F, 33, 100, 250, 1e6F}},
      {"highlights", field(&A::highlights), kPercent},
      {"shadows", field(&A::shadows), kPercent},
      {"whites", field(&A::whites), {-400, -100, -50, 1, 100, 1e6F, kNaN}},
      {"blacks", field(&A::blacks), {-1e6F, -100, -50, 1, 100, 400, kNaN}},
      {"contrast", field(&A::contrast), kPercent},
      {"tone_curve", &test::SetToneCurves, {0, 1, 2, 3, 4, 5}},
      {"clarity", field(&A::clarity), kSlider},
      {"texture", field(&A::texture), kSlider},
      {"dehaze", field(&A::dehaze), kPositive, kJumps},
      {"saturation", field(&A::saturation), kPercent},
      {"vibrance", field(&A::vibrance), kPercent},
      {"hsl", &test::SetHslBands, kSlider, kJumps},
      {"hsl_orange",
       [](A& a, float value) {
         a.hsl[1] = {value, value, value};
       },
       kPercent, kJumps},
      {"split_toning", &test::SetSplitToning, kSlider},
      {"nr_luminance", field(&A::nr_luminance), kPositive},
      {"nr_color", field(&A::nr_color), kPositive},
      {"sharpening", &test::SetSharpening, {-5, 0.01F, 33, 75, 150, 300}, kJumps},
      {"sharpening_radius",
       [](Adjustments& a, float radius) { a.sharpening_amount = 100, a.sharpening_radius = radius; },
       {0.05F, 0.5F, 5, 15.9F, 16, 40, 150},
       kJumps},
      {"distortion", field(&A::distortion), kSlider},
      {"ca_correction", field(&A::ca_correction), {-5, 1, 5, 12, 50, 100, 1000}},
      {"lens_vignette", field(&A::lens_vignette), kPositive},
      {"defringe", field(&A::defringe), kPositive, kJumps},
      {"geometry", &test::SetGeometry, {0, 1, 2, 3, 4, 5, 6}},
      {"rotation", field(&A::rotation), {-1e9F, -90, 0.01F, 33, 1e9F, kInfinity, kNaN}},
      {"vignette", &test::SetVignette, {-250, -100, -30, 1, 50, 100, 250}},
      {"grain", &test::SetGrain, {-5, 1, 50, 100}},
  };
}

// A photograph, noise, and sizes that are hard on loops.
std::vector<cv::Mat> Sources() {
  std::vector<cv::Mat> sources = {test::Photograph("cat.jpg", 320), test::NoiseImage({203, 151}, 3)};
  for (const cv::Size size : test::OddSizes()) sources.push_back(test::NoiseImage(size, 5));
  return sources;
}

class StageAgreement : public testing::TestWithParam<StageCase> {};

TEST_P(StageAgreement, StaysWithinOneCode) {
  const StageCase& stage = GetParam();
  int largest = 0;
  double share = 0;
  for (const float strength : stage.strengths) {
    for (const cv::Mat& source : Sources()) {
      Adjustments adjustments = NeutralAdjustments();
      stage.set(adjustments, strength);
      const cv::Mat expected = Expected(source, adjustments);
      const cv::Mat actual = DevelopedWithGrain(source, adjustments);
      ASSERT_EQ(actual.size(), expected.size());
      const test::Difference difference = test::Compare(actual, expected, 1);
      EXPECT_LE(difference.share_above, stage.jump_share)
          << "strength " << strength << " at " << source.size() << ", largest difference "
          << difference.largest;
      largest = std::max(largest, difference.largest);
      share = std::max(share, difference.share_above);
    }
  }
  std::printf("%-14s largest difference %5d of 65535, share above 1: %.4f %%\n", stage.name.c_str(), largest,
              share * 100);
}

INSTANTIATE_TEST_SUITE_P(Stages, StageAgreement, testing::ValuesIn(StageCases()),
                         [](const auto& test) { return test.param.name; });

// In codes. Dehaze divides by a transmission of at least 0.1, which amplifies earlier differences up to ten
// times.
int ChainTolerance(const Adjustments& adjustments) {
  constexpr int kStageTolerance = 2;
  constexpr int kDehazeAmplification = 10;
  return adjustments.dehaze > 0 ? kStageTolerance * kDehazeAmplification : kStageTolerance;
}

TEST(StageChains, TwoHundredRandomSettingsStayWithinTheirTolerance) {
  constexpr double kJumpShare = 0.0002;
  std::mt19937 random(200);
  int largest = 0;
  double largest_share = 0;
  for (int run = 0; run < 200; ++run) {
    const cv::Mat source =
        test::Photograph(run % 2 == 0 ? "cat.jpg" : "tower_orientation8.jpg", 240 + run % 7);
    const Adjustments adjustments = test::RandomAdjustments(random);
    const cv::Mat expected = Expected(source, adjustments);
    const cv::Mat actual = DevelopedWithGrain(source, adjustments);
    ASSERT_EQ(actual.size(), expected.size()) << "run " << run;
    const test::Difference difference = test::Compare(actual, expected, ChainTolerance(adjustments));
    EXPECT_LE(difference.share_above, kJumpShare) << "run " << run << ", largest " << difference.largest;
    largest = std::max(largest, difference.largest);
    largest_share = std::max(largest_share, difference.share_above);
  }
  std::printf("chains: largest difference %d of 65535, largest share above the tolerance: %.4f %%\n", largest,
              largest_share * 100);
}

TEST(FilmGrain, LeavesTheGeneratorWhereTheDrawEnds) {
  const cv::Mat source = test::Photograph("cat.jpg", 200);
  Adjustments adjustments = test::NeutralAdjustments();
  adjustments.grain_amount = 40;
  adjustments.clarity = 20;  // runs on all threads while the noise is drawn
  Expected(source, adjustments);
  const uint64_t expected = cv::theRNG().state;
  const cv::Mat first = DevelopedWithGrain(source, adjustments);
  EXPECT_EQ(cv::theRNG().state, expected);
  cv::Mat second;
  DevelopPipeline(source, adjustments, second);
  EXPECT_FALSE(test::SameBytes(first, second));
}

TEST(StageChains, GiveTheSameBytesForAnyNumberOfThreads) {
  std::mt19937 random(7);
  const int usual = cv::getNumThreads();
  for (size_t run = 0; run < 12; ++run) {
    const cv::Mat source =
        run < 4 ? test::Photograph("cat.jpg", 300) : test::NoiseImage(test::OddSizes()[run], 7);
    const Adjustments adjustments = test::RandomAdjustments(random);
    cv::setNumThreads(1);
    const cv::Mat expected = DevelopedWithGrain(source, adjustments);
    for (const int threads : {2, 3, 4}) {
      cv::setNumThreads(threads);
      EXPECT_TRUE(test::SameBytes(DevelopedWithGrain(source, adjustments), expected))
          << "run " << run << ", " << threads;
    }
  }
  cv::setNumThreads(usual);
}

TEST(StageChains, TheSmallestImagesPassThroughAllStagesAtOnce) {
  std::mt19937 random(3);
  for (const cv::Size size :
       {cv::Size(1, 1), cv::Size(1, 9), cv::Size(9, 1), cv::Size(11, 11), cv::Size(12, 11)}) {
    Adjustments adjustments = test::RandomAdjustments(random);
    for (float Adjustments::*field : {&A::clarity, &A::texture, &A::dehaze, &A::nr_luminance, &A::nr_color,
                                      &A::distortion, &A::ca_correction, &A::rotation, &A::perspective_h}) {
      adjustments.*field = 20;
    }
    test::SetSharpening(adjustments, 80);
    test::SetGrain(adjustments, 50);
    const cv::Mat source = test::NoiseImage(size, 8);
    const cv::Mat expected = Expected(source, adjustments);
    const cv::Mat actual = DevelopedWithGrain(source, adjustments);
    ASSERT_EQ(actual.size(), expected.size()) << size;
    EXPECT_LE(test::Compare(actual, expected, 0).largest, ChainTolerance(adjustments)) << size;
  }
}

}  // namespace
}  // namespace lumvik
