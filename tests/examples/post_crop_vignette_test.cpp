// Worked examples of the post-crop vignette.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;
using test::SamePixels;
using test::Uniform;

const cv::Vec4f kColor(0.2F, 0.4F, 0.6F, 0.5F);

class PostCropVignetteExample : public test::StageExample {
 protected:
  cv::Mat Vignetted(const cv::Mat& working, float amount, float midpoint, float roundness) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.vignette_amount = amount;
    adjustments.vignette_midpoint = midpoint;
    adjustments.vignette_roundness = roundness;
    return Developed(working, adjustments);
  }

  cv::Mat Vignetted(float amount, float midpoint, float roundness, const cv::Vec4f& color = kColor) const {
    return Vignetted(Uniform(80, 40, color), amount, midpoint, roundness);
  }

  // The weight of the white at 0.3 and 0.4 of the way from the center to the edges, where it is the
  // smoothstep of the distance.
  float Weight(float roundness) const {
    return Vignetted(Uniform(80, 40, {0, 0, 0, 1}), 100, 0, roundness).at<cv::Vec4f>(28, 52)[0];
  }
};

double Smoothstep(double t) {
  return (3 - 2 * t) * t * t;
}

TEST_P(PostCropVignetteExample, DistanceIsEllipticFromRoundnessZeroUp) {
  for (const float roundness : {0.0F, 5.0F, 40.0F, 100.0F}) {
    EXPECT_NEAR(Weight(roundness), Smoothstep(0.5), 1e-5) << roundness;
  }
}

TEST_P(PostCropVignetteExample, DistanceIsRectangularAtMinusHundred) {
  EXPECT_NEAR(Weight(-100), Smoothstep(0.4), 1e-5);
}

TEST_P(PostCropVignetteExample, DistanceBlendsBetween) {
  EXPECT_NEAR(Weight(-50), Smoothstep(0.45), 1e-5);
  EXPECT_NEAR(Weight(-1), Smoothstep(0.499), 1e-5);
}

TEST_P(PostCropVignetteExample, FollowsWideAndTallFrames) {
  for (const cv::Size size :
       {cv::Size(1300, 70), cv::Size(70, 1300), cv::Size(2049, 3), cv::Size(257, 255)}) {
    const cv::Mat out = Vignetted(Uniform(size.width, size.height, {0.5F, 0.5F, 0.5F, 1}), 50, 30, -40);
    const double cx = size.width / 2.0;
    const double cy = size.height / 2.0;
    for (const cv::Point at : {cv::Point(0, 0), cv::Point(255, 1), cv::Point(256, 2), cv::Point(1024, 2),
                               cv::Point(2, 1024), cv::Point(size.width - 1, size.height - 1)}) {
      if (!cv::Rect({0, 0}, size).contains(at)) continue;
      const double nx = std::abs(at.x - cx) / cx;
      const double ny = std::abs(at.y - cy) / cy;
      const double rectangular = std::max(nx, ny);
      const double distance = (std::hypot(nx, ny) - rectangular) * 0.6 + rectangular;
      const double t = std::clamp((distance - 0.3) / 0.7, 0.0, 1.0);
      EXPECT_NEAR(out.at<cv::Vec4f>(at)[1], 0.5 + 0.5 * 0.5 * Smoothstep(t), 1e-5) << size << at;
    }
  }
}

TEST_P(PostCropVignetteExample, EitherSignTurnsTheCornersWhite) {
  for (const float amount : {100.0F, -100.0F}) {
    const cv::Mat out = Vignetted(amount, 0, 0);
    for (const cv::Point corner : {cv::Point(0, 0), {79, 0}, {0, 39}, {79, 39}}) {
      const cv::Vec4f pixel = out.at<cv::Vec4f>(corner);
      for (int c = 0; c < 3; ++c) EXPECT_NEAR(pixel[c], 1, 1e-6);
      EXPECT_EQ(pixel[3], 0.5F);
    }
    EXPECT_EQ(out.at<cv::Vec4f>(20, 40), kColor) << "the center stays";
  }
  EXPECT_TRUE(SamePixels(Vignetted(70, 30, -40), Vignetted(-70, 30, -40)));
}

TEST_P(PostCropVignetteExample, FaintAmountsBrightenToo) {
  for (const float amount : {2.0F, -2.0F}) {
    EXPECT_NEAR(Vignetted(amount, 0, 0).at<cv::Vec4f>(0, 0)[0], 0.8 * 0.02 + 0.2, 1e-6);
  }
}

TEST_P(PostCropVignetteExample, SmoothstepBetweenMidpointAndEdge) {
  // On the middle row nx = 0.6 at column 64: t = (0.6 - 0.2) / 0.8 = 0.5, half of the amount.
  const cv::Vec4f half = Vignetted(60, 20, 0).at<cv::Vec4f>(20, 64);
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(half[c], (1 - kColor[c]) * 0.3 + kColor[c], 1e-5);
  // nx = 0.4, t = 0.25: 0.15625.
  const cv::Vec4f quarter = Vignetted(60, 20, 0).at<cv::Vec4f>(20, 56);
  EXPECT_NEAR(quarter[0], 0.8 * 0.6 * 0.15625 + 0.2, 1e-5);
  EXPECT_EQ(Vignetted(60, 20, 0).at<cv::Vec4f>(20, 47), kColor) << "inside the midpoint";
}

TEST_P(PostCropVignetteExample, ShapeFollowsTheFrame) {
  const cv::Mat out = Vignetted(60, 20, 0);
  // Half way to the left edge and half way to the top edge.
  EXPECT_EQ(out.at<cv::Vec4f>(20, 20), out.at<cv::Vec4f>(10, 40));
}

TEST_P(PostCropVignetteExample, FullMidpointKeepsTheEllipse) {
  const cv::Mat out = Vignetted(100, 100, 0);
  int inside = 0;
  for (int y = 0; y < out.rows; ++y) {
    for (int x = 0; x < out.cols; ++x) {
      if (std::hypot((x - 40) / 40.0, (y - 20) / 20.0) >= 0.999) continue;
      ++inside;
      ASSERT_EQ(out.at<cv::Vec4f>(y, x), kColor) << x << ", " << y;
    }
  }
  EXPECT_GT(inside, 2000);
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 0)[0], 1, 1e-6);
}

// At midpoint 100 the whole ramp is 1e-6 wide. In a frame of one row ny is -1, and one column beside the
// center the distance is the next float above 1.
TEST_P(PostCropVignetteExample, FullMidpointLeavesAnEdgeOfAMillionth) {
  const cv::Mat working = Vignetted(Uniform(4000, 1, {0, 0, 0, 1}), 100, 100, 0);
  const double t = 0.119209;
  EXPECT_EQ(working.at<cv::Vec4f>(0, 2000)[0], 0.0F);
  EXPECT_NEAR(working.at<cv::Vec4f>(0, 2001)[0], Smoothstep(t), 1e-5);
}

TEST_P(PostCropVignetteExample, RoundnessChangesTheShapeOnlyBelowZero) {
  EXPECT_TRUE(SamePixels(Vignetted(50, 30, 100), Vignetted(50, 30, 0)));
  EXPECT_FALSE(SamePixels(Vignetted(50, 30, -100), Vignetted(50, 30, 0)));
  // nx = ny = 0.4 has the elliptic distance 0.57 and the rectangular distance 0.4.
  EXPECT_NE(Vignetted(50, 45, 0).at<cv::Vec4f>(28, 56), kColor);
  EXPECT_EQ(Vignetted(50, 45, -100).at<cv::Vec4f>(28, 56), kColor);
}

TEST_P(PostCropVignetteExample, WhiteStaysWhiteAndOverflowIsClamped) {
  const cv::Mat out = Vignetted(70, 0, 0, {1, 1.5F, -0.5F, 1});
  for (int y = 0; y < out.rows; ++y) {
    for (int x = 0; x < out.cols; ++x) {
      ASSERT_EQ(out.at<cv::Vec4f>(y, x)[0], 1.0F);
      ASSERT_EQ(out.at<cv::Vec4f>(y, x)[1], 1.0F);
      ASSERT_GE(out.at<cv::Vec4f>(y, x)[2], 0.0F);
    }
  }
}

TEST_P(PostCropVignetteExample, ZeroAmountTouchesNothing) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_TRUE(SamePixels(Vignetted(0, 0, 0, over), Uniform(80, 40, over)));
}

INSTANTIATE_TEST_SUITE_P(Subjects, PostCropVignetteExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
