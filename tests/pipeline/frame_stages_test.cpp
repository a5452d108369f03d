// Stages that move pixels share passes over the image with each other and with the stages around them. The
// bytes are those of one pass per stage.
#include <gtest/gtest.h>

#include <functional>
#include <opencv2/core/utility.hpp>
#include <random>

#include "pipeline/develop_pipeline.h"
#include "pipeline/packed_rows.h"
#include "pipeline/row_steps.h"
#include "support/instruction_sets.h"
#include "support/random_adjustments.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using A = Adjustments;

cv::Mat InType(const cv::Mat& image, int type) {
  cv::Mat converted(image.size(), type);
  RunRowSteps(RowsOf(image), {}, StoreIn(converted));
  return converted;
}

// Copies the settings of one operation, in the order in which they run.
using CopySetting = void (*)(const A& from, A& to);
constexpr CopySetting kOperations[] = {
    [](const A& from, A& to) { to.exposure = from.exposure; },
    [](const A& from, A& to) { to.saturation = from.saturation; },
    [](const A& from, A& to) {
      to.sharpening_amount = from.sharpening_amount;
      to.sharpening_radius = from.sharpening_radius;
    },
    [](const A& from, A& to) { to.distortion = from.distortion; },
    [](const A& from, A& to) { to.ca_correction = from.ca_correction; },
    [](const A& from, A& to) { to.lens_vignette = from.lens_vignette; },
    [](const A& from, A& to) { to.flip_h = from.flip_h; },
    [](const A& from, A& to) { to.flip_v = from.flip_v; },
    [](const A& from, A& to) { to.rotation = from.rotation; },
    [](const A& from, A& to) {
      to.perspective_h = from.perspective_h;
      to.perspective_v = from.perspective_v;
    },
    [](const A& from, A& to) { to.crop = from.crop; },
    [](const A& from, A& to) { to.vignette_amount = from.vignette_amount; },
};

cv::Mat DevelopedOneByOne(const cv::Mat& source, const A& adjustments) {
  cv::Mat working = InType(source, CV_32FC4);
  for (const CopySetting copy : kOperations) {
    A alone = test::NeutralAdjustments();
    copy(adjustments, alone);
    working = DevelopWorkingImage(working, alone);
  }
  return InType(working, CV_16UC4);
}

cv::Mat DevelopedAtOnce(const cv::Mat& source, const A& adjustments) {
  cv::Mat developed;
  DevelopPipeline(source, adjustments, developed);
  return developed;
}

A RandomFrameAdjustments(std::mt19937& random) {
  const auto within = [&random](float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
  };
  const auto one_in = [&random](unsigned count) { return random() % count == 0; };
  A a = test::NeutralAdjustments();
  if (one_in(3)) a.exposure = within(-1, 1);
  if (one_in(3)) a.saturation = within(-100, 100);
  if (one_in(4)) a.sharpening_amount = within(1, 150);
  if (one_in(4)) a.distortion = within(-100, 100);
  if (one_in(4)) a.ca_correction = within(1, 300);
  if (one_in(4)) a.lens_vignette = within(1, 100);
  if (one_in(2)) a.flip_h = 1;
  if (one_in(2)) a.flip_v = 1;
  if (one_in(2)) a.rotation = one_in(3) ? within(-180, 180) : within(-3, 3);
  if (one_in(3)) a.perspective_h = within(-100, 100);
  if (one_in(4)) a.perspective_v = within(-100, 100);
  if (one_in(2)) a.crop = {within(0, 0.5F), within(0, 0.5F), within(0.2F, 1), within(0.2F, 1)};
  if (one_in(4)) a.vignette_amount = within(-100, 100);
  return a;
}

std::vector<cv::Size> Sizes() {
  std::vector<cv::Size> sizes = test::OddSizes();
  // More than one strip, and more than one chunk of rows.
  for (const cv::Size size : {cv::Size(1, 90), cv::Size(600, 1), cv::Size(531, 70), cv::Size(270, 400)}) {
    sizes.push_back(size);
  }
  return sizes;
}

TEST(FrameStages, TogetherGiveTheBytesOfEachAlone) {
  std::mt19937 random(13);
  const std::vector<cv::Size> sizes = Sizes();
  for (size_t run = 0; run < 400; ++run) {
    const cv::Mat source = test::NoiseImage(sizes[run % sizes.size()], run);
    const A adjustments = RandomFrameAdjustments(random);
    EXPECT_TRUE(test::SameBytes(DevelopedAtOnce(source, adjustments), DevelopedOneByOne(source, adjustments)))
        << "run " << run << " at " << source.size();
  }
}

TEST(FrameStages, AnyNumberOfThreadsAndEveryInstructionSetGiveTheSameBytes) {
  std::mt19937 random(14);
  const int usual = cv::getNumThreads();
  const std::vector<cv::Size> sizes = Sizes();
  for (size_t run = 0; run < 60; ++run) {
    const cv::Mat source = test::NoiseImage(sizes[run % sizes.size()], run);
    const A adjustments = RandomFrameAdjustments(random);
    cv::setNumThreads(1);
    const cv::Mat expected = DevelopedAtOnce(source, adjustments);
    test::WithEachInstructionSet([&] {
      for (const int threads : {1, 2, 3}) {
        cv::setNumThreads(threads);
        EXPECT_TRUE(test::SameBytes(DevelopedAtOnce(source, adjustments), expected))
            << "run " << run << ", " << threads << " threads";
      }
    });
  }
  cv::setNumThreads(usual);
}

TEST(FrameStages, FlipsAndACropAreTheImagesOwnPixels) {
  for (const cv::Size size : Sizes()) {
    const cv::Mat source = test::NoiseImage(size, 3);
    for (const bool flip_h : {false, true}) {
      for (const bool flip_v : {false, true}) {
        A adjustments = test::NeutralAdjustments();
        adjustments.flip_h = flip_h ? 1 : 0;
        adjustments.flip_v = flip_v ? 1 : 0;
        cv::Mat expected = source.clone();
        if (flip_h) cv::flip(expected, expected, 1);
        if (flip_v) cv::flip(expected, expected, 0);
        EXPECT_TRUE(test::SameBytes(DevelopedAtOnce(source, adjustments), expected)) << size;
        if (size.width < 44 || size.height < 44) continue;
        adjustments.crop = {0.25F, 0.5F, 0.25F, 0.25F};
        const cv::Rect kept(size.width / 4, size.height / 2, size.width / 4, size.height / 4);
        EXPECT_TRUE(test::SameBytes(DevelopedAtOnce(source, adjustments), expected(kept).clone())) << size;
      }
    }
  }
}

}  // namespace
}  // namespace lumvik
