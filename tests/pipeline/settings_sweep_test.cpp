// Every setting over the whole range of a float, in pairs: whatever the host sets, a render ends or throws,
// writes nothing but its result, and does not depend on the number of threads.
#include <gtest/gtest.h>

#include <array>
#include <bitset>
#include <cmath>
#include <functional>
#include <limits>
#include <opencv2/core/utility.hpp>
#include <utility>
#include <vector>

#include "api/float_setters.h"
#include "pipeline/develop_pipeline.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using A = Adjustments;

struct Setting {
  float lowest;
  float highest;
  std::function<void(A&, float)> set;
};

std::vector<Setting> AllSettings() {
  std::vector<Setting> settings;
  const auto add = [&](float lowest, float highest, auto field) {
    settings.push_back({lowest, highest, [field](A& a, float value) { field(a) = value; }});
  };
  for (const test::FloatSetter& setter : test::kFloatSetters) {
    add(setter.lowest, setter.highest, [&](A& a) -> float& { return a.*setter.field; });
  }
  for (size_t curve = 0; curve < kToneCurveCount; ++curve) {
    add(0, 1, [=](A& a) -> float& { return a.tone_curves[curve][1].x; });
    add(0, 1, [=](A& a) -> float& { return a.tone_curves[curve][1].y; });
  }
  for (size_t band = 0; band < kHslBandCount; ++band) {
    add(-180, 180, [=](A& a) -> float& { return a.hsl[band].hue; });
    add(-100, 100, [=](A& a) -> float& { return a.hsl[band].saturation; });
    add(-100, 100, [=](A& a) -> float& { return a.hsl[band].luminance; });
  }
  add(0, 360, [](A& a) -> float& { return a.split_toning.highlight_hue; });
  add(0, 100, [](A& a) -> float& { return a.split_toning.highlight_saturation; });
  add(0, 360, [](A& a) -> float& { return a.split_toning.shadow_hue; });
  add(0, 100, [](A& a) -> float& { return a.split_toning.shadow_saturation; });
  add(-100, 100, [](A& a) -> float& { return a.split_toning.balance; });
  using Crop = CropRectangle;
  for (float Crop::*side : {&Crop::x, &Crop::y, &Crop::w, &Crop::h}) {
    add(0, 1, [=](A& a) -> float& { return a.crop.*side; });
  }
  for (int A::*flip : {&A::flip_h, &A::flip_v}) {
    settings.push_back({0, 1, [=](A& a, float value) { a.*flip = value > 0 ? 1 : 0; }});
  }
  return settings;
}

constexpr size_t kLevels = 13;

std::array<float, kLevels> LevelsOf(const Setting& setting) {
  using Float = std::numeric_limits<float>;
  const float low = setting.lowest;
  const float high = setting.highest;
  const float limit = std::max(-low, high);
  return {0,
          Float::denorm_min(),
          -Float::denorm_min(),
          0.7F * low + 0.3F * high,
          std::nextafter(low, -Float::infinity()),
          std::nextafter(high, Float::infinity()),
          -10 * limit,
          1000 * limit,
          1e30F,
          -1e30F,
          Float::infinity(),
          -Float::infinity(),
          Float::quiet_NaN()};
}

// All pairs in few runs, by two orthogonal arrays (K. A. Bush, "Orthogonal Arrays of Index Unity", 1952), for
// which the number of levels is prime. The settings fill a square. Its rows are the columns of one array, its
// columns those of the other, so that any two settings differ in at least one of them.
constexpr size_t kArrays = 2;
constexpr size_t kRuns = kArrays * kLevels * kLevels;
constexpr size_t kSquareSide = 9;
static_assert(kSquareSide <= kLevels);

size_t LevelInRun(size_t run, size_t setting) {
  const size_t factor = run % kArrays == 0 ? setting / kSquareSide : setting % kSquareSide;
  const size_t row = run / kArrays;
  return (row / kLevels * factor + row % kLevels) % kLevels;
}

A AdjustmentsOfRun(size_t run, const std::vector<Setting>& settings) {
  A adjustments;
  for (ToneCurve& curve : adjustments.tone_curves) curve = {{0, 0}, {0.5F, 0.5F}, {1, 1}};
  for (size_t i = 0; i < settings.size(); ++i) {
    settings[i].set(adjustments, LevelsOf(settings[i])[LevelInRun(run, i)]);
  }
  return adjustments;
}

TEST(SettingsSweep, CombinesEveryPairOfLevels) {
  const size_t settings = AllSettings().size();
  ASSERT_LE(settings, kSquareSide * kSquareSide);
  for (size_t a = 0; a < settings; ++a) {
    for (size_t b = 0; b < a; ++b) {
      std::bitset<kLevels * kLevels> pairs;
      for (size_t run = 0; run < kRuns; ++run) pairs.set(LevelInRun(run, a) * kLevels + LevelInRun(run, b));
      EXPECT_TRUE(pairs.all()) << "settings " << a << " and " << b;
    }
  }
}

// The earlier render, which the next one overwrites, within a frame that it must leave alone.
class FramedImage {
 public:
  explicit FramedImage(cv::Size size) {
    const cv::Size framed(size.width + 2 * kFrame, size.height + 2 * kFrame);
    image_ = cv::Mat(framed, CV_16UC4, kColor)(cv::Rect({kFrame, kFrame}, size));
  }

  cv::Mat& Image() { return image_; }

  bool IsFrameIntact() const {
    if (!image_.isSubmatrix()) return true;  // the render has another size, and so other memory
    cv::Mat framed = image_;
    framed.adjustROI(kFrame, kFrame, kFrame, kFrame);
    framed = framed.clone();
    framed(cv::Rect({kFrame, kFrame}, image_.size())).setTo(kColor);
    return test::SameBytes(framed, cv::Mat(framed.size(), CV_16UC4, kColor));
  }

 private:
  static constexpr int kFrame = 8;
  inline static const cv::Scalar kColor = {1, 22, 333, 4444};
  cv::Mat image_;
};

cv::Mat Developed(const cv::Mat& source, const A& adjustments, int threads) {
  cv::setNumThreads(threads);
  cv::theRNG().state = 1;  // of the grain
  FramedImage rendered(source.size());
  DevelopPipeline(source, adjustments, rendered.Image());
  EXPECT_TRUE(rendered.IsFrameIntact());
  return rendered.Image();
}

class SettingsSweep : public testing::TestWithParam<cv::Size> {
 protected:
  void TearDown() override { cv::setNumThreads(usual_threads_); }

 private:
  int usual_threads_ = cv::getNumThreads();
};

TEST_P(SettingsSweep, EndsWithTheSameBytesForAnyNumberOfThreads) {
  const cv::Mat source = test::NoiseImage(GetParam(), 1);
  const cv::Mat before = source.clone();
  const std::vector<Setting> settings = AllSettings();
  constexpr size_t kRunsPerComparison = 4;
  for (size_t run = 0; run < kRuns; ++run) {
    SCOPED_TRACE(run);
    A adjustments = AdjustmentsOfRun(run, settings);
    cv::Mat rendered;
    try {
      rendered = Developed(source, adjustments, 1);
    } catch (const cv::Exception&) {
      // No other stage refuses a setting.
      adjustments.sharpening_amount = adjustments.ca_correction = 0;
      rendered = Developed(source, adjustments, 1);
    }
    if (run % kRunsPerComparison != 0) continue;
    EXPECT_TRUE(test::SameBytes(Developed(source, adjustments, 2), rendered));
  }
  EXPECT_TRUE(test::SameBytes(source, before));
}

// Taller than wide; narrower and wider than what is computed at a time.
INSTANTIATE_TEST_SUITE_P(Sizes, SettingsSweep,
                         testing::Values(cv::Size(7, 40), cv::Size(300, 12), cv::Size(1100, 12)));

}  // namespace
}  // namespace lumvik
