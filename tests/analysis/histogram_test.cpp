#include "analysis/histogram.h"

#include <gmock/gmock.h>

#include <numeric>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>
#include <random>

#include "pipeline/develop_pipeline.h"
#include "reference/histogram.h"
#include "support/instruction_sets.h"
#include "support/random_adjustments.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

constexpr const Histogram Histograms::*kAll[] = {&Histograms::red, &Histograms::green, &Histograms::blue,
                                                 &Histograms::luminance};

cv::Mat Pixel(uint16_t red, uint16_t green, uint16_t blue, uint16_t alpha = 65535) {
  return {1, 1, CV_16UC4, cv::Scalar(red, green, blue, alpha)};
}

// Expects a single pixel.
int BinOf(const Histogram& counts) {
  EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), 0U), 1U);
  return static_cast<int>(std::find(counts.begin(), counts.end(), 1U) - counts.begin());
}

void ExpectAsReference(const cv::Mat& image) {
  const Histograms counts = CountLevels(image);
  const Histograms expected = reference::CountLevels(image);
  for (const auto histogram : kAll) {
    EXPECT_THAT(counts.*histogram, ::testing::ElementsAreArray(expected.*histogram)) << image.size();
  }
}

TEST(CountLevels, CountsBlackInTheFirstBinAndWhiteInTheLast) {
  for (const auto histogram : kAll) {
    EXPECT_EQ(BinOf(CountLevels(Pixel(65535, 65535, 65535)).*histogram), 255);
    EXPECT_EQ(BinOf(CountLevels(Pixel(0, 0, 0)).*histogram), 0);
  }
}

TEST(CountLevels, EndsTheFirstBinAt128) {
  for (const auto histogram : kAll) {
    EXPECT_EQ(BinOf(CountLevels(Pixel(128, 128, 128)).*histogram), 0);
    EXPECT_EQ(BinOf(CountLevels(Pixel(129, 129, 129)).*histogram), 1);
  }
}

TEST(CountLevels, SeparatesTheChannelsAndIgnoresAlpha) {
  const Histograms counts = CountLevels(Pixel(10 * 257, 20 * 257, 30 * 257, 40 * 257));
  EXPECT_EQ(BinOf(counts.red), 10);
  EXPECT_EQ(BinOf(counts.green), 20);
  EXPECT_EQ(BinOf(counts.blue), 30);
  EXPECT_EQ(BinOf(counts.luminance), 19);  // 0.2126 * 10 + 0.7152 * 20 + 0.0722 * 30 = 18.6
}

TEST(CountLevels, RoundsEveryCodeToItsBin) {
  cv::Mat codes(256, 256, CV_16UC4);
  for (int code = 0; code < 65536; ++code) {
    codes.at<cv::Vec4w>(code / 256, code % 256) = cv::Vec4w::all(static_cast<uint16_t>(code));
  }
  ExpectAsReference(codes);
  const Histogram counts = CountLevels(codes).red;
  EXPECT_EQ(counts[0], 129U);
  EXPECT_EQ(counts[255], 129U);
  for (size_t bin = 1; bin < 255; ++bin) EXPECT_EQ(counts[bin], 257U) << bin;
}

TEST(CountLevels, CountsEveryPixelOnceAtAnySize) {
  for (const cv::Size size : test::OddSizes()) {
    const cv::Mat image = test::NoiseImage(size, 3);
    ExpectAsReference(image);
    for (const auto histogram : kAll) {
      const Histogram counts = CountLevels(image).*histogram;
      EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), 0U), image.total()) << size;
    }
  }
}

// All pixels increment the same counter, so an unsynchronized one would lose some.
TEST(CountLevels, EqualsTheReferenceOnAUniformImage) {
  ExpectAsReference(cv::Mat(301, 397, CV_16UC4, cv::Scalar(1000, 20000, 30000, 65535)));
}

TEST(CountLevels, EqualsTheReferenceOnDevelopedPhotographs) {
  std::mt19937 random(11);
  const cv::Mat source = test::Photograph("cat.jpg", 320);
  for (int i = 0; i < 20; ++i) {
    cv::Mat rendered;
    DevelopPipeline(source, test::RandomAdjustments(random), rendered);
    ExpectAsReference(rendered);
  }
}

TEST(CountLevels, EqualsTheReferenceOnPartOfAnImage) {
  ExpectAsReference(test::NoiseImage({64, 48}, 5)(cv::Rect(3, 5, 40, 31)));
}

TEST(CountLevels, IsZeroWithoutPixels) {
  const Histograms counts = CountLevels(ImageBuffer());
  for (const auto histogram : kAll) EXPECT_THAT(counts.*histogram, ::testing::Each(0U));
}

TEST(CountLevels, IsTheSameForEveryInstructionSet) {
  const cv::Mat image = test::NoiseImage({1037, 19}, 8);
  test::WithEachInstructionSet([&] { ExpectAsReference(image); });
}

TEST(CountLevels, IsTheSameForAnyNumberOfThreads) {
  const cv::Mat image = test::NoiseImage({211, 173}, 8);
  const int usual = cv::getNumThreads();
  for (const int threads : {1, 2, 3, 4}) {
    cv::setNumThreads(threads);
    ExpectAsReference(image);
  }
  cv::setNumThreads(usual);
}

}  // namespace
}  // namespace lumvik
