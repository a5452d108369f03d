#include "analysis/preview.h"

#include <gtest/gtest.h>

#include <opencv2/imgproc.hpp>
#include <random>

#include "pipeline/develop_pipeline.h"
#include "reference/preview.h"
#include "support/instruction_sets.h"
#include "support/random_adjustments.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

cv::Mat Preview(const cv::Mat& rendered, const cv::Mat& mask = cv::Mat(), float bg_blur = 0) {
  cv::Mat preview;
  RenderPreview(rendered, mask, bg_blur, preview);
  return preview;
}

// Random values from 0 to 255.
cv::Mat NoiseMask(cv::Size size) {
  cv::Mat mask(size, CV_8U);
  cv::RNG(9).fill(mask, cv::RNG::UNIFORM, 0, 256);
  return mask;
}

// The subject fills the left half, with a soft edge.
cv::Mat HalfMask(cv::Size size) {
  cv::Mat mask(size, CV_8U, cv::Scalar(0));
  mask.colRange(0, size.width / 2).setTo(255);
  cv::GaussianBlur(mask, mask, cv::Size(9, 9), 2);
  return mask;
}

cv::Mat Opaque(cv::Mat image) {
  cv::insertChannel(cv::Mat(image.size(), CV_16U, cv::Scalar(65535)), image, 3);
  return image;
}

void ExpectAsReference(const cv::Mat& rendered, const cv::Mat& mask, float bg_blur) {
  EXPECT_TRUE(
      test::SameBytes(Preview(rendered, mask, bg_blur), reference::RenderPreview(rendered, mask, bg_blur)))
      << rendered.size() << " mask " << mask.size() << " blur " << bg_blur;
}

TEST(BackgroundBlurKernelSize, GrowsInOddStepsFrom3To61) {
  for (const auto& [percent, size] : std::vector<std::pair<float, int>>{
           {0.001F, 3}, {1, 3}, {4.9F, 3}, {6.55F, 3}, {6.6F, 5}, {50, 31}, {99, 61}, {100, 61}}) {
    EXPECT_EQ(BackgroundBlurKernelSize(percent), size) << percent;
  }
}

TEST(RenderPreview, DividesSamplesBy257AndRounds) {
  const cv::Mat rendered(1, 1, CV_16UC4, cv::Scalar(65535, 128, 129, 65535));
  EXPECT_EQ(Preview(rendered).at<cv::Vec4b>(0, 0), cv::Vec4b(255, 0, 1, 255));
}

TEST(RenderPreview, OnlyConvertsWithoutAMaskOrABlur) {
  const cv::Mat rendered = test::NoiseImage({37, 23}, 1);
  const cv::Mat plain = ToRgba8(rendered);
  EXPECT_TRUE(test::SameBytes(Preview(rendered), plain));
  EXPECT_TRUE(test::SameBytes(Preview(rendered, cv::Mat(), 80), plain));
  EXPECT_TRUE(test::SameBytes(Preview(rendered, HalfMask(rendered.size()), 0), plain));
}

TEST(RenderPreview, KeepsTheSubjectAndBlursTheBackground) {
  const cv::Mat rendered = test::Photograph("cat.jpg", 200);
  const cv::Mat sharp = ToRgba8(rendered);
  const cv::Mat preview = Preview(rendered, HalfMask(rendered.size()), 50);
  cv::Mat blurred;
  cv::GaussianBlur(sharp, blurred, cv::Size(31, 31), 0);
  const cv::Range left(0, 90);
  const cv::Range right(110, 200);
  EXPECT_TRUE(test::SameBytes(preview.colRange(left).clone(), sharp.colRange(left).clone()));
  EXPECT_TRUE(test::SameBytes(preview.colRange(right).clone(), blurred.colRange(right).clone()));
  EXPECT_FALSE(test::SameBytes(sharp.colRange(right).clone(), blurred.colRange(right).clone()));
}

TEST(RenderPreview, BlendsAllFourChannelsAtEveryStrength) {
  const cv::Size size(97, 61);
  for (const cv::Mat& rendered : {test::NoiseImage(size, 2), Opaque(test::NoiseImage(size, 2))}) {
    for (const float bg_blur : {0.5F, 6.55F, 6.6F, 20.0F, 50.0F, 77.0F, 100.0F}) {
      ExpectAsReference(rendered, NoiseMask(size), bg_blur);
    }
  }
}

TEST(RenderPreview, IsTheSameForEveryInstructionSet) {
  const cv::Mat rendered = test::NoiseImage({151, 9}, 3);
  test::WithEachInstructionSet([&] {
    ExpectAsReference(rendered, NoiseMask(rendered.size()), 45);
    ExpectAsReference(Opaque(rendered.clone()), NoiseMask(rendered.size()), 45);
  });
}

TEST(RenderPreview, BlursAlphaToo) {
  cv::Mat rendered(40, 40, CV_16UC4, cv::Scalar(9000, 9000, 9000, 0));
  rendered(cv::Rect(20, 0, 20, 40)).setTo(cv::Scalar(9000, 9000, 9000, 65535));
  const cv::Mat preview = Preview(rendered, cv::Mat(40, 40, CV_8U, cv::Scalar(0)), 30);
  const int alpha = preview.at<cv::Vec4b>(20, 20)[3];
  EXPECT_GT(alpha, 0);
  EXPECT_LT(alpha, 255);
}

TEST(RenderPreview, EqualsTheReferenceAtOddSizes) {
  for (const cv::Size size : test::OddSizes())
    ExpectAsReference(test::NoiseImage(size, 4), NoiseMask(size), 40);
}

TEST(RenderPreview, ResizesAMaskOfAnotherSize) {
  const cv::Mat rendered = test::NoiseImage({83, 59}, 6);
  for (const cv::Size size : {cv::Size(1, 1), cv::Size(40, 30), cv::Size(83, 58), cv::Size(200, 140)}) {
    ExpectAsReference(rendered, NoiseMask(size), 60);
  }
}

TEST(RenderPreview, EqualsTheReferenceOnDevelopedPhotographs) {
  std::mt19937 random(23);
  const cv::Mat source = test::Photograph("cat.jpg", 300);
  for (int i = 0; i < 10; ++i) {
    cv::Mat rendered;
    DevelopPipeline(source, test::RandomAdjustments(random), rendered);
    ExpectAsReference(rendered, HalfMask(source.size()), static_cast<float>(10 * (i + 1)));
  }
}

TEST(RenderPreview, WritesToTheGivenMemoryAndKeepsTheRenderedImage) {
  const cv::Mat rendered = test::NoiseImage({31, 17}, 12);
  const cv::Mat before = rendered.clone();
  std::vector<uint8_t> memory(rendered.total() * 4);
  cv::Mat preview(rendered.size(), CV_8UC4, memory.data());
  RenderPreview(rendered, NoiseMask(rendered.size()), 30, preview);
  EXPECT_EQ(preview.data, memory.data());
  EXPECT_TRUE(test::SameBytes(preview, reference::RenderPreview(rendered, NoiseMask(rendered.size()), 30)));
  EXPECT_TRUE(test::SameBytes(rendered, before));
}

}  // namespace
}  // namespace lumvik
