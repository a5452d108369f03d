#include "reference/post_crop_vignette.h"

#include <gtest/gtest.h>

#include <cmath>

#include "reference/pixel.h"

namespace lumvik::reference {
namespace {

const cv::Vec4f kColor(0.2F, 0.4F, 0.6F, 0.5F);

cv::Mat Vignetted(float amount, float midpoint, float roundness, const cv::Vec4f& color = kColor) {
  Adjustments adjustments;
  adjustments.vignette_amount = amount;
  adjustments.vignette_midpoint = midpoint;
  adjustments.vignette_roundness = roundness;
  cv::Mat working = Uniform(80, 40, color);
  PostCropVignette({}, working, adjustments);
  return working;
}

TEST(VignetteDistance, EllipticFromRoundnessZeroUp) {
  for (const float roundness : {0.0F, 5.0F, 40.0F, 100.0F}) {
    EXPECT_NEAR(VignetteDistance(0.6F, -0.8F, roundness), 1, 1e-6);
  }
}

TEST(VignetteDistance, RectangularAtMinusHundred) {
  EXPECT_EQ(VignetteDistance(0.6F, -0.8F, -100), 0.8F);
  EXPECT_EQ(VignetteDistance(-0.9F, 0.8F, -100), 0.9F);
}

TEST(VignetteDistance, BlendsBetween) {
  EXPECT_NEAR(VignetteDistance(0.6F, 0.8F, -50), 0.9, 1e-6);
  EXPECT_NEAR(VignetteDistance(0.6F, 0.8F, -1), 0.998, 1e-6);
}

TEST(PostCropVignette, EitherSignTurnsTheCornersWhite) {
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

TEST(PostCropVignette, FaintAmountsBrightenToo) {
  for (const float amount : {2.0F, -2.0F}) {
    EXPECT_NEAR(Vignetted(amount, 0, 0).at<cv::Vec4f>(0, 0)[0], 0.8 * 0.02 + 0.2, 1e-6);
  }
}

TEST(PostCropVignette, SmoothstepBetweenMidpointAndEdge) {
  // On the middle row nx = 0.6 at column 64: t = (0.6 - 0.2) / 0.8 = 0.5, half of the amount.
  const cv::Vec4f half = Vignetted(60, 20, 0).at<cv::Vec4f>(20, 64);
  for (int c = 0; c < 3; ++c) EXPECT_NEAR(half[c], (1 - kColor[c]) * 0.3 + kColor[c], 1e-5);
  // nx = 0.4, t = 0.25: 0.15625.
  const cv::Vec4f quarter = Vignetted(60, 20, 0).at<cv::Vec4f>(20, 56);
  EXPECT_NEAR(quarter[0], 0.8 * 0.6 * 0.15625 + 0.2, 1e-5);
  EXPECT_EQ(Vignetted(60, 20, 0).at<cv::Vec4f>(20, 47), kColor) << "inside the midpoint";
}

TEST(PostCropVignette, ShapeFollowsTheFrame) {
  const cv::Mat out = Vignetted(60, 20, 0);
  // Half way to the left edge and half way to the top edge.
  EXPECT_EQ(out.at<cv::Vec4f>(20, 20), out.at<cv::Vec4f>(10, 40));
}

TEST(PostCropVignette, FullMidpointKeepsTheEllipse) {
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
TEST(PostCropVignette, FullMidpointLeavesAnEdgeOfAMillionth) {
  cv::Mat working = Uniform(4000, 1, {0, 0, 0, 1});
  Adjustments adjustments;
  adjustments.vignette_amount = 100;
  adjustments.vignette_midpoint = 100;
  PostCropVignette({}, working, adjustments);
  const double t = 0.119209;
  EXPECT_EQ(working.at<cv::Vec4f>(0, 2000)[0], 0.0F);
  EXPECT_NEAR(working.at<cv::Vec4f>(0, 2001)[0], (3 - 2 * t) * t * t, 1e-5);
}

TEST(PostCropVignette, RoundnessChangesTheShapeOnlyBelowZero) {
  EXPECT_TRUE(SamePixels(Vignetted(50, 30, 100), Vignetted(50, 30, 0)));
  EXPECT_FALSE(SamePixels(Vignetted(50, 30, -100), Vignetted(50, 30, 0)));
  // nx = ny = 0.4 lies at 0.57 on the ellipse and at 0.4 on the rectangle.
  EXPECT_NE(Vignetted(50, 45, 0).at<cv::Vec4f>(28, 56), kColor);
  EXPECT_EQ(Vignetted(50, 45, -100).at<cv::Vec4f>(28, 56), kColor);
}

TEST(PostCropVignette, WhiteStaysWhiteAndOverflowIsClamped) {
  const cv::Mat out = Vignetted(70, 0, 0, {1, 1.5F, -0.5F, 1});
  for (int y = 0; y < out.rows; ++y) {
    for (int x = 0; x < out.cols; ++x) {
      ASSERT_EQ(out.at<cv::Vec4f>(y, x)[0], 1.0F);
      ASSERT_EQ(out.at<cv::Vec4f>(y, x)[1], 1.0F);
      ASSERT_GE(out.at<cv::Vec4f>(y, x)[2], 0.0F);
    }
  }
}

TEST(PostCropVignette, ZeroAmountTouchesNothing) {
  const cv::Vec4f over(1.5F, -0.5F, 0.5F, 1);
  EXPECT_TRUE(SamePixels(Vignetted(0, 0, 0, over), Uniform(80, 40, over)));
}

}  // namespace
}  // namespace lumvik::reference
