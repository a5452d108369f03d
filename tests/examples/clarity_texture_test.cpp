// Worked examples of clarity and texture.
#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;
using test::Uniform;

constexpr int kLength = 401;
constexpr int kCenter = 200;
constexpr float kBase = 0.3F;
constexpr float kStep = 0.4F;

// The peak of a normalized Gaussian kernel; the tails that OpenCV cuts off at 4 sigma weigh 6e-5.
double KernelPeak(double sigma) {
  double sum = 0;
  const int radius = static_cast<int>(sigma * 4);
  for (int i = -radius; i <= radius; ++i) sum += std::exp(-0.5 * i * i / (sigma * sigma));
  return 1 / sum;
}

class ClarityTextureExample : public test::StageExample {
 protected:
  // One brighter pixel on a line of gray, after the stage.
  cv::Vec4f OnLine(float clarity, float texture, const cv::Vec4f& step, cv::Size size = {kLength, 1},
                   cv::Point at = {kCenter, 0}) const {
    cv::Mat working = Uniform(size.width, size.height, {kBase, kBase, kBase, 0.7F});
    working.at<cv::Vec4f>(at) += step;
    Adjustments adjustments = NeutralAdjustments();
    adjustments.clarity = clarity;
    adjustments.texture = texture;
    return Developed(working, adjustments).at<cv::Vec4f>(at);
  }
};

TEST_P(ClarityTextureExample, TextureAddsTheFineHighPass) {
  const double detail = kStep * (1 - KernelPeak(3));
  const cv::Vec4f pixel = OnLine(0, 100, {kStep, kStep, kStep, 0});
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(pixel[c], kBase + kStep + 0.2 * detail, 1e-5);
  EXPECT_EQ(pixel[3], 0.7F);
}

TEST_P(ClarityTextureExample, ClarityAddsTheCoarseHighPass) {
  const double detail = kStep * (1 - KernelPeak(20));
  EXPECT_NEAR(OnLine(100, 0, {kStep, kStep, kStep, 0})[0], kBase + kStep + 0.3 * detail, 1e-5);
  EXPECT_NEAR(OnLine(-50, 0, {kStep, kStep, kStep, 0})[0], kBase + kStep - 0.15 * detail, 1e-5);
}

// The mirrored border does not repeat the edge pixel, so its weight is the same as elsewhere.
TEST_P(ClarityTextureExample, SameDetailInEveryDirectionAndAtTheEdge) {
  const cv::Vec4f step(kStep, kStep, kStep, 0);
  const double fine = kBase + kStep + 0.2 * kStep * (1 - KernelPeak(3));
  const double coarse = kBase + kStep + 0.3 * kStep * (1 - KernelPeak(20));
  for (const int length : {1300, 2049}) {
    for (const int position : {0, 255, 256, 1023, 1024, length - 1}) {
      for (const auto& [size, at] : {std::pair(cv::Size(length, 1), cv::Point(position, 0)),
                                     std::pair(cv::Size(1, length), cv::Point(0, position))}) {
        EXPECT_NEAR(OnLine(0, 100, step, size, at)[0], fine, 1e-5) << size << at;
        EXPECT_NEAR(OnLine(100, 0, step, size, at)[0], coarse, 1e-5) << size << at;
      }
    }
  }
}

TEST_P(ClarityTextureExample, BothTakeTheOriginalLuminance) {
  const double fine = 0.3 * (1 - KernelPeak(3));
  const double coarse = 0.3 * (1 - KernelPeak(20));
  EXPECT_NEAR(OnLine(100, 100, {0.3F, 0.3F, 0.3F, 0})[0], kBase + 0.3 + 0.3 * coarse + 0.2 * fine, 1e-5);
}

TEST_P(ClarityTextureExample, ClampsAfterEachHighPass) {
  // The clarity's sum passes 1 and is cut before the texture is subtracted.
  const double fine = 0.6 * (1 - KernelPeak(3));
  EXPECT_NEAR(OnLine(100, -100, {0.6F, 0.6F, 0.6F, 0})[0], 1 - 0.2 * fine, 1e-5);
}

TEST_P(ClarityTextureExample, LuminanceDetailGoesToEveryChannel) {
  const double weights[3] = {0.2126, 0.7152, 0.0722};
  for (int c = 0; c < 3; ++c) {
    cv::Vec4f step(0, 0, 0, 0);
    step[c] = kStep;
    const double added = 0.2 * weights[c] * kStep * (1 - KernelPeak(3));
    const cv::Vec4f pixel = OnLine(0, 100, step);
    for (int channel = 0; channel < 3; ++channel) {
      EXPECT_NEAR(pixel[channel], kBase + step[channel] + added, 1e-5);
    }
  }
}

TEST_P(ClarityTextureExample, NeutralKeepsOverflow) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_EQ(OnePixelDeveloped(over, NeutralAdjustments()), over);
}

TEST_P(ClarityTextureExample, UniformImageIsOnlyClamped) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.clarity = 100;
  adjustments.texture = -100;
  const cv::Mat developed = Developed(Uniform(30, 20, {1.5F, -0.5F, 0.5F, 1.5F}), adjustments);
  EXPECT_LE(cv::norm(developed, Uniform(30, 20, {1, 0, 0.5F, 1.5F}), cv::NORM_INF), 1e-6);
}

INSTANTIATE_TEST_SUITE_P(Subjects, ClarityTextureExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
