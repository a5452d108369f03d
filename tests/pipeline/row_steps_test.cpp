#include "pipeline/row_steps.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include "pipeline/packed_rows.h"
#include "support/instruction_sets.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

using test::NoiseImage;
using test::SameBytes;
using test::WorkingNoise;

cv::Mat AfterSteps(const cv::Mat& image, const RowSteps& steps) {
  cv::Mat result(image.size(), CV_32FC4);
  RunRowSteps(RowsOf(image), steps, StoreIn(result));
  return result;
}

// Only the blur of each color is left.
AreaTransform BlurColors(const Gaussian& blur) {
  return NextToBlurredColors(blur,
                             [](const RowPart& row, const float* red, const float* green, const float* blue) {
                               for (int i = 0; i < row.columns; ++i) {
                                 row.red[i] = red[i];
                                 row.green[i] = green[i];
                                 row.blue[i] = blue[i];
                               }
                             });
}

cv::Mat WithBlurredColors(const cv::Mat& image, cv::Size kernel) {
  cv::Mat planes[kChannels];
  cv::split(image, planes);
  for (int i = 0; i < 3; ++i) cv::GaussianBlur(planes[i], planes[i], kernel, 0);
  cv::Mat blurred;
  cv::merge(planes, kChannels, blurred);
  return blurred;
}

TEST(RunRowSteps, RunsPointKernelsInOrderOnEveryPixel) {
  const RowTransform halve = {[](const RowPart& row) {
    for (float* plane : {row.red, row.green, row.blue}) {
      for (int i = 0; i < row.columns; ++i) plane[i] *= 0.5F;
    }
  }};
  const RowTransform add_place = {[](const RowPart& row) {
    for (int i = 0; i < row.columns; ++i)
      row.red[i] += static_cast<float>(row.x + i) + 0.25F * static_cast<float>(row.y);
  }};
  const cv::Mat image(2, 3 * kMaxPart, CV_32FC4, cv::Scalar(0.5, 0.25, 1.0, 0.375));
  const cv::Mat result = AfterSteps(image, {halve, add_place});
  for (int y = 0; y < image.rows; ++y) {
    for (int x = 0; x < image.cols; ++x) {
      const float place = static_cast<float>(x) + 0.25F * static_cast<float>(y);
      ASSERT_EQ(result.at<cv::Vec4f>(y, x), cv::Vec4f(0.25F + place, 0.125F, 0.5F, 0.375F)) << x << ' ' << y;
    }
  }
}

TEST(RunRowSteps, AnAreaStageSeesTheBlurOfItsColors) {
  std::vector<cv::Size> sizes = test::OddSizes();
  sizes.emplace_back(2 * kMaxPart + 3, 40);
  for (const cv::Size size : sizes) {
    const cv::Mat image = WorkingNoise(size);
    const cv::Mat expected = WithBlurredColors(image, {9, 9});
    EXPECT_LT(cv::norm(AfterSteps(image, {BlurColors(Gaussian::OfSize(9))}), expected, cv::NORM_INF), 1e-6)
        << size;
  }
}

TEST(RunRowSteps, AnAreaStageSeesWhatTheStepsBeforeItLeft) {
  const cv::Mat image = WorkingNoise({120, 300});
  const RowTransform double_red = {[](const RowPart& row) {
    for (int i = 0; i < row.columns; ++i) row.red[i] *= 2;
  }};
  cv::Mat expected = image.mul(cv::Scalar(2, 1, 1, 1));
  expected = WithBlurredColors(WithBlurredColors(expected, {7, 7}), {13, 13}).mul(cv::Scalar(2, 1, 1, 1));
  const cv::Mat actual = AfterSteps(
      image, {double_red, BlurColors(Gaussian::OfSize(7)), BlurColors(Gaussian::OfSize(13)), double_red});
  EXPECT_LT(cv::norm(actual, expected, cv::NORM_INF), 1e-6);
}

TEST(RunRowSteps, BlursTheLuminanceOfThatMoment) {
  const cv::Mat image = WorkingNoise({70, 50});
  cv::Mat luminance(image.size(), CV_32F);
  RunRowSteps(RowsOf(image), {}, StoreLuminance(luminance));
  cv::Mat expected;
  cv::GaussianBlur(luminance, expected, {5, 5}, 0);
  const AreaTransform show =
      NextToBlurredLuminance(Gaussian::OfSize(5), [](const RowPart& row, const float* blurred) {
        for (int i = 0; i < row.columns; ++i) row.green[i] = blurred[i];
      });
  cv::Mat green;
  cv::extractChannel(AfterSteps(image, {show}), green, 1);
  EXPECT_LT(cv::norm(green, expected, cv::NORM_INF), 1e-6);
}

// A task without memory has taken rows that it does not store.
TEST(RunRowSteps, StoresEveryRowAfterATaskRanOutOfMemory) {
  const cv::Mat image = WorkingNoise({600, 100});
  const int usual = cv::getNumThreads();
  for (const int threads : {1, 2}) {
    cv::setNumThreads(threads);
    for (const int failing_row : {0, 30, 99}) {
      cv::Mat stored(image.size(), image.type());
      const RowSink store = StoreIn(stored);
      std::atomic<bool> has_failed{false};
      const RowSink store_or_fail = {[&](const RowPart& part) {
        if (part.y == failing_row && !has_failed.exchange(true)) throw std::bad_alloc();
        store.store(part);
      }};
      RunRowSteps(RowsOf(image), {}, store_or_fail);
      EXPECT_TRUE(has_failed);
      EXPECT_TRUE(SameBytes(stored, image)) << threads << " threads, row " << failing_row;
    }
  }
  cv::setNumThreads(usual);
}

TEST(RunRowSteps, AnyNumberOfThreadsAndEveryInstructionSetGiveTheSameBytes) {
  const cv::Mat image = NoiseImage({333, 517}, 6);
  const RowSteps steps = {BlurColors(Gaussian::OfSize(5)), BlurColors(Gaussian::OfSigma(1.4))};
  const cv::Mat expected = AfterSteps(image, steps);
  const int usual = cv::getNumThreads();
  for (const int threads : {1, 2, 3, 4}) {
    cv::setNumThreads(threads);
    EXPECT_TRUE(SameBytes(AfterSteps(image, steps), expected)) << threads;
  }
  cv::setNumThreads(usual);
  test::WithEachInstructionSet([&] { EXPECT_TRUE(SameBytes(AfterSteps(image, steps), expected)); });
}

}  // namespace
}  // namespace lumvik
