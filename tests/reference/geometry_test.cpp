#include "reference/geometry.h"

#include <gtest/gtest.h>

#include <cmath>

#include "reference/pixel.h"

namespace lumvik::reference {
namespace {

// Red holds the column's number, green the row's, both in hundredths.
cv::Mat Grid(int columns, int rows) {
  cv::Mat image(rows, columns, CV_32FC4);
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < columns; ++x) {
      image.at<cv::Vec4f>(y, x) = {static_cast<float>(x) / 100, static_cast<float>(y) / 100, 0.5F, 1};
    }
  }
  return image;
}

cv::Mat Transformed(cv::Mat image, const Adjustments& adjustments) {
  Geometry({}, image, adjustments);
  return image;
}

cv::Mat Cropped(int columns, int rows, const CropRectangle& crop) {
  Adjustments adjustments;
  adjustments.crop = crop;
  return Transformed(Grid(columns, rows), adjustments);
}

cv::Size CroppedSize(int columns, int rows, const CropRectangle& crop) {
  return Cropped(columns, rows, crop).size();
}

TEST(Flip, MirrorsLeftAndRight) {
  Adjustments adjustments;
  adjustments.flip_h = 1;
  const cv::Mat out = Transformed(Grid(30, 20), adjustments);
  EXPECT_EQ(out.at<cv::Vec4f>(3, 4), Grid(30, 20).at<cv::Vec4f>(3, 25));
}

TEST(Flip, MirrorsTopAndBottom) {
  Adjustments adjustments;
  adjustments.flip_v = -1;
  const cv::Mat out = Transformed(Grid(30, 20), adjustments);
  EXPECT_EQ(out.at<cv::Vec4f>(3, 4), Grid(30, 20).at<cv::Vec4f>(16, 4));
}

TEST(Flip, BothAreHalfATurn) {
  Adjustments adjustments;
  adjustments.flip_h = 1;
  adjustments.flip_v = 1;
  cv::Mat turned;
  cv::rotate(Grid(31, 20), turned, cv::ROTATE_180);
  EXPECT_TRUE(SamePixels(Transformed(Grid(31, 20), adjustments), turned));
}

TEST(Rotation, PositiveTurnsCounterClockwise) {
  Adjustments adjustments;
  adjustments.rotation = 90;
  const cv::Mat out = Transformed(Grid(40, 40), adjustments);
  ASSERT_EQ(out.size(), cv::Size(40, 40));
  // What stood right of the center stands above it.
  const cv::Vec4f above = out.at<cv::Vec4f>(5, 20);
  EXPECT_NEAR(above[0], 0.35, 1e-4);
  EXPECT_NEAR(above[1], 0.20, 1e-4);
}

TEST(Rotation, KeepsTheSizeAndMirrorsIntoTheGaps) {
  Adjustments adjustments;
  adjustments.rotation = 90;
  const cv::Mat out = Transformed(Grid(40, 20), adjustments);
  ASSERT_EQ(out.size(), cv::Size(40, 20));
  // 15 right of the center stands what was 15 below it, row 25 of 20: mirrored, row 14.
  EXPECT_NEAR(out.at<cv::Vec4f>(10, 35)[1], 0.14, 1e-4);
  EXPECT_NEAR(out.at<cv::Vec4f>(10, 25)[1], 0.15, 1e-4);
  EXPECT_NEAR(out.at<cv::Vec4f>(10, 35)[3], 1, 1e-6) << "no transparent corners";
}

TEST(Rotation, SmallAngleAboutTheCenter) {
  Adjustments adjustments;
  adjustments.rotation = 10;
  const cv::Mat out = Transformed(Grid(60, 60), adjustments);
  EXPECT_NEAR(out.at<cv::Vec4f>(30, 30)[0], 0.30, 1e-4);
  // A point 20 right of the center comes from 20 (cos, sin) of -10 degrees below it.
  const cv::Vec4f right = out.at<cv::Vec4f>(30, 50);
  EXPECT_NEAR(right[0], 0.30 + 0.20 * std::cos(CV_PI / 18), 3e-4);
  EXPECT_NEAR(right[1], 0.30 + 0.20 * std::sin(CV_PI / 18), 3e-4);
}

TEST(Perspective, HorizontalPullsTheTopInAndTheBottomOut) {
  Adjustments adjustments;
  adjustments.perspective_h = 100;
  const cv::Mat out = Transformed(Grid(100, 100), adjustments);
  ASSERT_EQ(out.size(), cv::Size(100, 100));
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 15)[0], 0, 2e-3);
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 50)[0], 0.5, 2e-3);
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 80)[0], 65 / 70.0, 5e-3);
  // Left of the pulled-in corner the picture is mirrored.
  EXPECT_GT(out.at<cv::Vec4f>(0, 0)[0], 0.15F);
  // The bottom edge spans -15..115 of the frame, so its left end shows column 11.5.
  EXPECT_NEAR(out.at<cv::Vec4f>(99, 0)[0], 15 / 130.0, 5e-3);
}

TEST(Perspective, VerticalMovesTheEdgesInwards) {
  Adjustments adjustments;
  adjustments.perspective_v = 100;
  const cv::Mat out = Transformed(Grid(100, 100), adjustments);
  EXPECT_NEAR(out.at<cv::Vec4f>(15, 50)[1], 0, 1e-3);
  EXPECT_NEAR(out.at<cv::Vec4f>(50, 50)[1], 0.5, 1e-3);
  EXPECT_NEAR(out.at<cv::Vec4f>(71, 50)[1], 0.8, 1e-3);
  EXPECT_NEAR(out.at<cv::Vec4f>(71, 20)[0], 0.2, 1e-3);
  // Above the moved edge row -15 / 0.7 = -21.4 is asked for: the edge row counts twice, so it is 20.4.
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 50)[1], 0.204, 1e-3);
}

TEST(Perspective, NegativeValuesGoTheOtherWay) {
  Adjustments adjustments;
  adjustments.perspective_h = -100;
  const cv::Mat out = Transformed(Grid(100, 100), adjustments);
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 0)[0], 15 / 130.0, 5e-3);
}

TEST(Crop, TakesFractionsOfTheFrame) {
  const cv::Mat out = Cropped(100, 80, {0.1F, 0.25F, 0.5F, 0.5F});
  ASSERT_EQ(out.size(), cv::Size(50, 40));
  EXPECT_TRUE(SamePixels(out, Grid(100, 80)(cv::Rect(10, 20, 50, 40)).clone()));
  EXPECT_TRUE(out.isContinuous());
}

TEST(Crop, NearlyTheWholeFrameFromTheOriginIsNoCrop) {
  EXPECT_EQ(CroppedSize(1000, 800, {0, 0, 0.995F, 0.995F}), cv::Size(1000, 800));
  EXPECT_EQ(CroppedSize(1000, 800, {0, 0, 0.99F, 0.99F}), cv::Size(1000, 800));
  EXPECT_EQ(CroppedSize(1000, 800, {0, 0, 0.98F, 0.995F}), cv::Size(980, 796));
  EXPECT_EQ(CroppedSize(1000, 800, {0.001F, 0, 0.995F, 0.995F}), cv::Size(995, 796));
  EXPECT_EQ(CroppedSize(1000, 800, {0, 0, 0.995F, 0.98F}), cv::Size(995, 784));
}

TEST(Crop, IsHeldToTheRemainingArea) {
  EXPECT_EQ(CroppedSize(1000, 800, {0.5F, 0.5F, 1, 1}), cv::Size(500, 400));
}

TEST(Crop, NegativeOriginsStartAtZero) {
  const cv::Mat out = Cropped(100, 80, {-0.2F, -0.5F, 0.5F, 0.5F});
  EXPECT_TRUE(SamePixels(out, Grid(100, 80)(cv::Rect(0, 0, 50, 40)).clone()));
}

TEST(Crop, TenPixelsAreTooFew) {
  EXPECT_EQ(CroppedSize(100, 80, {0.1F, 0, 0.105F, 1}), cv::Size(100, 80));
  EXPECT_EQ(CroppedSize(100, 80, {0.1F, 0, 0.115F, 1}), cv::Size(11, 80));
  EXPECT_EQ(CroppedSize(80, 100, {0.1F, 0, 1, 0.105F}), cv::Size(80, 100));
  EXPECT_EQ(CroppedSize(80, 100, {0.1F, 0, 1, 0.115F}), cv::Size(72, 11));
}

TEST(Crop, BeyondTheFrameIsNoCrop) {
  EXPECT_EQ(CroppedSize(100, 80, {1.5F, 0, 0.5F, 0.5F}), cv::Size(100, 80));
  EXPECT_EQ(CroppedSize(100, 80, {0, 1e30F, 0.5F, 0.5F}), cv::Size(100, 80));
  EXPECT_EQ(CroppedSize(100, 80, {0.5F, 0.5F, 0, 0.5F}), cv::Size(100, 80));
  EXPECT_EQ(CroppedSize(100, 80, {0.5F, 0.5F, 0.5F, -1}), cv::Size(100, 80));
}

TEST(Crop, ActsOnTheTurnedFrame) {
  Adjustments adjustments;
  adjustments.flip_v = 1;
  adjustments.crop = {0, 0, 0.5F, 0.5F};
  const cv::Mat out = Transformed(Grid(100, 80), adjustments);
  ASSERT_EQ(out.size(), cv::Size(50, 40));
  EXPECT_EQ(out.at<cv::Vec4f>(0, 0), Grid(100, 80).at<cv::Vec4f>(79, 0));
}

TEST(Geometry, NeutralLeavesTheImageItself) {
  const cv::Mat image = Grid(30, 20);
  EXPECT_EQ(Transformed(image, Adjustments()).data, image.data);
}

}  // namespace
}  // namespace lumvik::reference
