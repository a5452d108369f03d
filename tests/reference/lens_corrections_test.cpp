#include "reference/lens_corrections.h"

#include <gtest/gtest.h>

#include "reference/hsl_color.h"
#include "reference/pixel.h"

namespace lumvik::reference {
namespace {

// Red and blue hold the columns' numbers, green the rows', in hundredths.
cv::Mat Ramp(int columns, int rows) {
  cv::Mat working(rows, columns, CV_32FC4);
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < columns; ++x) {
      const float level = static_cast<float>(x) / 100;
      working.at<cv::Vec4f>(y, x) = {level, static_cast<float>(y) / 100, level, 0.7F};
    }
  }
  return working;
}

cv::Mat ColumnNumbers(int columns, int rows) {
  cv::Mat plane(rows, columns, CV_32F);
  for (int x = 0; x < columns; ++x) plane.col(x).setTo(cv::Scalar(x + 1));
  return plane;
}

cv::Mat Corrected(const cv::Mat& input, float Adjustments::*field, float value) {
  cv::Mat working = input.clone();
  Adjustments adjustments;
  adjustments.*field = value;
  LensCorrections({}, working, adjustments);
  return working;
}

Hsl Defringed(float defringe, float h, float s, float l) {
  Adjustments adjustments;
  adjustments.defringe = defringe;
  const Rgb rgb = hsl_to_rgb(h, s, l);
  const cv::Vec4f pixel = OnPixel(LensCorrections, adjustments, {rgb.r, rgb.g, rgb.b, 1});
  return rgb_to_hsl(pixel[0], pixel[1], pixel[2]);
}

TEST(LensCorrections, NothingAwakeKeepsEveryBit) {
  cv::Mat working = Ramp(200, 10);
  Adjustments adjustments;
  adjustments.ca_correction = -5;
  adjustments.lens_vignette = -50;
  adjustments.defringe = -1;
  LensCorrections({}, working, adjustments);
  EXPECT_TRUE(SamePixels(working, Ramp(200, 10)));
}

// The distance of a sample from where the map points is at most half of OpenCV's 1/32 pixel grid.
constexpr double kMapTolerance = 0.01 / 64 + 1e-6;

TEST(Distortion, PositiveSamplesNearerTheCenter) {
  const cv::Mat out = Corrected(Ramp(100, 100), &Adjustments::distortion, 100);
  EXPECT_EQ(out.at<cv::Vec4f>(50, 50)[0], 0.5F) << "the center stays";
  // On the middle row nx = -0.8, f = 1 - 0.64 / 2.
  EXPECT_NEAR(out.at<cv::Vec4f>(50, 10)[0], (50 - 40 * 0.68) / 100, kMapTolerance);
  // Off the middle row both coordinates count: nx = ny = -0.8, f = 1 - 1.28 / 2.
  EXPECT_NEAR(out.at<cv::Vec4f>(10, 10)[0], (50 - 40 * 0.36) / 100, kMapTolerance);
  EXPECT_NEAR(out.at<cv::Vec4f>(10, 10)[1], (50 - 40 * 0.36) / 100, kMapTolerance);
  EXPECT_NEAR(out.at<cv::Vec4f>(80, 50)[1], (50 + 30 * 0.82) / 100, kMapTolerance);
  EXPECT_NEAR(out.at<cv::Vec4f>(10, 10)[3], 0.7, 1e-6);
}

TEST(Distortion, NegativeSamplesBeyondTheEdgeMirrored) {
  const cv::Mat out = Corrected(Ramp(100, 100), &Adjustments::distortion, -100);
  // nx = -1, f = 1.5, column -25: the edge column counts twice, so it is column 24.
  EXPECT_NEAR(out.at<cv::Vec4f>(50, 0)[0], 0.24, kMapTolerance);
  EXPECT_NEAR(out.at<cv::Vec4f>(50, 30)[0], (50 - 20 * 1.08) / 100, kMapTolerance);
}

TEST(Distortion, TheLongerSideIsTheUnit) {
  const cv::Mat wide = Corrected(Ramp(100, 20), &Adjustments::distortion, 50);
  EXPECT_NEAR(wide.at<cv::Vec4f>(10, 10)[0], (50 - 40 * 0.84) / 100, kMapTolerance);
  const cv::Mat tall = Corrected(Ramp(40, 100), &Adjustments::distortion, 50);
  EXPECT_NEAR(tall.at<cv::Vec4f>(50, 10)[0], (20 - 10 * (1 - 0.04 * 0.25)) / 100, kMapTolerance);
  EXPECT_NEAR(tall.at<cv::Vec4f>(10, 20)[1], (50 - 40 * (1 - 0.64 * 0.25)) / 100, kMapTolerance);
}

TEST(FitToSize, EqualSizesStay) {
  cv::Mat plane = ColumnNumbers(30, 20);
  const uchar* data = plane.data;
  FitToSize(plane, {30, 20});
  EXPECT_EQ(plane.data, data);
}

TEST(FitToSize, LargerPlanesAreCropped) {
  cv::Mat plane = ColumnNumbers(1003, 40);
  FitToSize(plane, {1000, 40});
  ASSERT_EQ(plane.size(), cv::Size(1000, 40));
  EXPECT_EQ(plane.at<float>(0, 0), 2.0F) << "one column lost on the left";
  EXPECT_EQ(plane.at<float>(0, 999), 1001.0F) << "two on the right";
  plane = ColumnNumbers(1004, 40);
  FitToSize(plane, {1000, 40});
  EXPECT_EQ(plane.at<float>(0, 0), 3.0F);
  plane = ColumnNumbers(40, 1004).t();
  FitToSize(plane, {1004, 36});
  EXPECT_EQ(plane.at<float>(0, 0), 3.0F);
}

TEST(FitToSize, SmallerPlanesAreCenterdOnZeros) {
  cv::Mat plane = ColumnNumbers(997, 36);
  FitToSize(plane, {1000, 40});
  ASSERT_EQ(plane.size(), cv::Size(1000, 40));
  EXPECT_EQ(plane.at<float>(2, 0), 0.0F);
  EXPECT_EQ(plane.at<float>(2, 1), 1.0F);
  EXPECT_EQ(plane.at<float>(2, 997), 997.0F);
  EXPECT_EQ(plane.at<float>(2, 998), 0.0F);
  EXPECT_EQ(plane.at<float>(2, 999), 0.0F);
  EXPECT_EQ(plane.at<float>(1, 500), 0.0F);
  EXPECT_EQ(plane.at<float>(37, 500), 500.0F);
  EXPECT_EQ(plane.at<float>(38, 500), 0.0F);
}

TEST(FitToSize, OnePixelLessIsPadded) {
  cv::Mat plane = ColumnNumbers(999, 39);
  FitToSize(plane, {1000, 40});
  ASSERT_EQ(plane.size(), cv::Size(1000, 40));
  EXPECT_EQ(plane.at<float>(0, 0), 1.0F);
  EXPECT_EQ(plane.at<float>(0, 999), 0.0F);
  EXPECT_EQ(plane.at<float>(39, 0), 0.0F);
}

TEST(ChromaticAberration, RedGrowsAndBlueShrinks) {
  const cv::Mat input = Uniform(1000, 40, {0.5F, 0.6F, 0.7F, 0.8F});
  const cv::Mat out = Corrected(input, &Adjustments::ca_correction, 100);
  ASSERT_EQ(out.size(), input.size());
  for (const int column : {0, 998, 999}) {
    EXPECT_EQ(out.at<cv::Vec4f>(20, column)[2], 0.0F) << column;
  }
  for (const int column : {1, 500, 997}) {
    EXPECT_NEAR(out.at<cv::Vec4f>(20, column)[2], 0.7, 1e-6) << column;
  }
  for (const int column : {0, 500, 999}) {
    const cv::Vec4f pixel = out.at<cv::Vec4f>(20, column);
    EXPECT_NEAR(pixel[0], 0.5, 1e-6);
    EXPECT_EQ(pixel[1], 0.6F);
    EXPECT_EQ(pixel[3], 0.8F);
  }
}

TEST(ChromaticAberration, ShiftsRedOutwardsAndBlueInwards) {
  const cv::Mat input = Ramp(1000, 40);
  const cv::Mat out = Corrected(input, &Adjustments::ca_correction, 100);
  // Pixel 900 of the red plane is pixel 901 of the enlarged one, whose center lies at 901.5 / 1.003 - 0.5 of
  // the source; blue's is pixel 899 of the reduced one.
  const cv::Vec4f pixel = out.at<cv::Vec4f>(20, 900);
  EXPECT_NEAR(pixel[0], (901.5 / 1.003 - 0.5) / 100, 1e-4);
  EXPECT_NEAR(pixel[2], (899.5 / 0.997 - 0.5) / 100, 1e-4);
  EXPECT_EQ(pixel[1], input.at<cv::Vec4f>(20, 900)[1]);
}

TEST(ChromaticAberration, PlaneOnePixelSmallerThanTheFrame) {
  const cv::Mat out = Corrected(Uniform(1000, 40, {0.5F, 0.6F, 0.7F, 0.8F}), &Adjustments::ca_correction, 33);
  EXPECT_NEAR(out.at<cv::Vec4f>(20, 0)[2], 0.7, 1e-6);
  EXPECT_EQ(out.at<cv::Vec4f>(20, 999)[2], 0.0F);
}

TEST(ChromaticAberration, FaintSettingsActOnWideFrames) {
  const cv::Mat out = Corrected(Uniform(20000, 1, {0.5F, 0.6F, 0.7F, 0.8F}), &Adjustments::ca_correction, 1);
  EXPECT_EQ(out.at<cv::Vec4f>(0, 19999)[2], 0.0F) << "19999.4 columns of blue";
}

TEST(ChromaticAberration, LeavesTheOtherCorrectionsAsleep) {
  const cv::Mat over = Uniform(8, 8, {0.9F, -0.5F, 1.5F, 1});
  EXPECT_TRUE(SamePixels(Corrected(over, &Adjustments::ca_correction, 1), over)) << "too small to be resized";
}

TEST(LensVignetting, CornersAreBrightenedByHalf) {
  const cv::Mat out = Corrected(Uniform(60, 40, {0.2F, 0.3F, 0.4F, 0.5F}), &Adjustments::lens_vignette, 100);
  const cv::Vec4f corner = out.at<cv::Vec4f>(0, 0);
  EXPECT_NEAR(corner[0], 0.3, 1e-6);
  EXPECT_NEAR(corner[1], 0.45, 1e-6);
  EXPECT_NEAR(corner[2], 0.6, 1e-6);
  EXPECT_EQ(corner[3], 0.5F);
  EXPECT_EQ(out.at<cv::Vec4f>(20, 30), cv::Vec4f(0.2F, 0.3F, 0.4F, 0.5F));
  // Half way to the corner a quarter of the gain.
  EXPECT_NEAR(out.at<cv::Vec4f>(10, 15)[0], 0.2 * 1.125, 1e-6);
  const cv::Mat half = Corrected(Uniform(60, 40, {0.2F, 0.3F, 0.4F, 0.5F}), &Adjustments::lens_vignette, 50);
  EXPECT_NEAR(half.at<cv::Vec4f>(0, 0)[0], 0.25, 1e-6);
}

TEST(LensVignetting, Clamps) {
  const cv::Mat out = Corrected(Uniform(4, 4, {0.9F, -0.5F, 0.1F, 1}), &Adjustments::lens_vignette, 100);
  EXPECT_EQ(out.at<cv::Vec4f>(0, 0)[0], 1.0F);
  EXPECT_EQ(out.at<cv::Vec4f>(0, 0)[1], 0.0F);
}

TEST(Defringe, DampsSaturatedFringes) {
  EXPECT_NEAR(Defringed(100, 0.75F, 0.8F, 0.5F).s, 0.4, 1e-5);
  EXPECT_NEAR(Defringed(100, 0.3F, 0.8F, 0.5F).s, 0.4, 1e-5);
  EXPECT_NEAR(Defringed(40, 0.75F, 0.8F, 0.5F).s, 0.8 * 0.8, 1e-5);
  EXPECT_NEAR(Defringed(40, 0.75F, 0.8F, 0.4F).h, 0.75, 1e-5);
  EXPECT_NEAR(Defringed(40, 0.75F, 0.8F, 0.4F).l, 0.4, 1e-6);
}

TEST(Defringe, PaleFringesStay) {
  // At 40 the limit is 0.3.
  EXPECT_NEAR(Defringed(40, 0.75F, 0.29F, 0.5F).s, 0.29, 1e-6);
  EXPECT_NEAR(Defringed(40, 0.75F, 0.31F, 0.5F).s, 0.31 * 0.8, 1e-5);
}

TEST(Defringe, OtherHuesStay) {
  for (const float hue : {0.0F, 0.1F, 0.24F, 0.41F, 0.5F, 0.64F, 0.86F}) {
    EXPECT_NEAR(Defringed(100, hue, 0.8F, 0.5F).s, 0.8, 1e-5) << hue;
  }
  for (const float hue : {0.26F, 0.39F, 0.66F, 0.84F}) {
    EXPECT_NEAR(Defringed(100, hue, 0.8F, 0.5F).s, 0.4, 1e-5) << hue;
  }
}

TEST(Defringe, BoundsAreStrict) {
  Adjustments adjustments;
  adjustments.defringe = 100;
  const std::pair<float, cv::Vec4f> hues[] = {{0.25F, {0.5F, 1, 0, 1}},
                                              {0.4F, {0, 1, 0.4F, 1}},
                                              {0.65F, {0, 0.1000001F, 1, 1}},
                                              {0.85F, {1, 0, 0.9F, 1}}};
  for (const auto& [hue, color] : hues) {
    ASSERT_EQ(rgb_to_hsl(color[0], color[1], color[2]).h, hue);
    EXPECT_EQ(OnPixel(LensCorrections, adjustments, color), color) << hue;
  }
  adjustments.defringe = 50;
  const cv::Vec4f at_the_limit(0.5F, 0.375F, 0.625F, 1);
  ASSERT_EQ(rgb_to_hsl(at_the_limit[0], at_the_limit[1], at_the_limit[2]).s, 0.25F);
  EXPECT_EQ(OnPixel(LensCorrections, adjustments, at_the_limit), at_the_limit);
}

TEST(Defringe, GrayStays) {
  Adjustments adjustments;
  adjustments.defringe = 100;
  const cv::Vec4f gray(0.4F, 0.4F, 0.4F, 1);
  EXPECT_EQ(OnPixel(LensCorrections, adjustments, gray), gray);
}

}  // namespace
}  // namespace lumvik::reference
