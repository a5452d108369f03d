#include "reference/clarity_texture.h"

#include <gtest/gtest.h>

#include <cmath>

#include "reference/pixel.h"

namespace lumvik::reference {
namespace {

constexpr int kLength = 401;
constexpr int kCenter = 200;
constexpr float kBase = 0.3F;
constexpr float kStep = 0.4F;

// Largest value of a normalized Gaussian kernel; the tails that OpenCV cuts off at 4 sigma weigh 6e-5.
double KernelPeak(double sigma) {
  double sum = 0;
  const int reach = static_cast<int>(sigma * 4);
  for (int i = -reach; i <= reach; ++i) sum += std::exp(-0.5 * i * i / (sigma * sigma));
  return 1 / sum;
}

// One brighter pixel in a line of gray, after the stage.
cv::Vec4f OnLine(float clarity, float texture, const cv::Vec4f& step, cv::Size size = {kLength, 1},
                 cv::Point place = {kCenter, 0}) {
  cv::Mat working = Uniform(size.width, size.height, {kBase, kBase, kBase, 0.7F});
  working.at<cv::Vec4f>(place) += step;
  Adjustments adjustments;
  adjustments.clarity = clarity;
  adjustments.texture = texture;
  ClarityTexture({}, working, adjustments);
  return working.at<cv::Vec4f>(place);
}

TEST(ClarityTexture, TextureAddsTheFineHighPass) {
  const double detail = kStep * (1 - KernelPeak(3));
  const cv::Vec4f pixel = OnLine(0, 100, {kStep, kStep, kStep, 0});
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(pixel[c], kBase + kStep + 0.2 * detail, 1e-5);
  EXPECT_EQ(pixel[3], 0.7F);
}

TEST(ClarityTexture, ClarityAddsTheCoarseHighPass) {
  const double detail = kStep * (1 - KernelPeak(20));
  EXPECT_NEAR(OnLine(100, 0, {kStep, kStep, kStep, 0})[0], kBase + kStep + 0.3 * detail, 1e-5);
  EXPECT_NEAR(OnLine(-50, 0, {kStep, kStep, kStep, 0})[0], kBase + kStep - 0.15 * detail, 1e-5);
}

// The mirror at the frame's edge does not count the edge pixel twice, so it is weighed there as elsewhere.
TEST(ClarityTexture, SameDetailInEveryDirectionAndAtTheEdge) {
  const cv::Vec4f step(kStep, kStep, kStep, 0);
  const double fine = kBase + kStep + 0.2 * kStep * (1 - KernelPeak(3));
  const double coarse = kBase + kStep + 0.3 * kStep * (1 - KernelPeak(20));
  const cv::Size row(kLength, 1);
  const cv::Size column(1, kLength);
  for (const auto& [size, place] :
       {std::pair(row, cv::Point(0, 0)), {row, {kLength - 1, 0}}, {column, {0, kCenter}}, {column, {0, 0}}}) {
    EXPECT_NEAR(OnLine(0, 100, step, size, place)[0], fine, 1e-5) << size << place;
    EXPECT_NEAR(OnLine(100, 0, step, size, place)[0], coarse, 1e-5) << size << place;
  }
}

TEST(ClarityTexture, BothTakeTheOriginalLuminance) {
  const double fine = 0.3 * (1 - KernelPeak(3));
  const double coarse = 0.3 * (1 - KernelPeak(20));
  EXPECT_NEAR(OnLine(100, 100, {0.3F, 0.3F, 0.3F, 0})[0], kBase + 0.3 + 0.3 * coarse + 0.2 * fine, 1e-5);
}

TEST(ClarityTexture, ClampsAfterEachHighPass) {
  // The clarity's sum passes 1 and is cut before the texture is subtracted.
  const double fine = 0.6 * (1 - KernelPeak(3));
  EXPECT_NEAR(OnLine(100, -100, {0.6F, 0.6F, 0.6F, 0})[0], 1 - 0.2 * fine, 1e-5);
}

TEST(ClarityTexture, LuminanceDetailGoesToEveryChannel) {
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

TEST(ClarityTexture, NeutralKeepsOverflow) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_EQ(OnPixel(ClarityTexture, Adjustments(), over), over);
}

TEST(ClarityTexture, UniformImageIsOnlyClamped) {
  Adjustments adjustments;
  adjustments.clarity = 100;
  adjustments.texture = -100;
  cv::Mat working = Uniform(30, 20, {1.5F, -0.5F, 0.5F, 1.5F});
  ClarityTexture({}, working, adjustments);
  EXPECT_LE(cv::norm(working, Uniform(30, 20, {1, 0, 0.5F, 1.5F}), cv::NORM_INF), 1e-6);
}

}  // namespace
}  // namespace lumvik::reference
