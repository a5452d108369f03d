// Worked examples of the geometry stage.
#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "examples/stage_example.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;
using test::SamePixels;

// Red holds the column, green the row, both in hundredths.
cv::Mat Grid(int columns, int rows) {
  cv::Mat image(rows, columns, CV_32FC4);
  for (int y = 0; y < rows; ++y) {
    for (int x = 0; x < columns; ++x) {
      image.at<cv::Vec4f>(y, x) = {static_cast<float>(x) / 100, static_cast<float>(y) / 100, 0.5F, 1};
    }
  }
  return image;
}

class GeometryExample : public test::StageExample {
 protected:
  cv::Mat Cropped(int columns, int rows, const CropRectangle& crop) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.crop = crop;
    return Developed(Grid(columns, rows), adjustments);
  }

  cv::Size CroppedSize(int columns, int rows, const CropRectangle& crop) const {
    return Cropped(columns, rows, crop).size();
  }
};

class FlipExample : public GeometryExample {};
class RotationExample : public GeometryExample {};
class PerspectiveExample : public GeometryExample {};
class CropExample : public GeometryExample {};

TEST_P(FlipExample, MirrorsLeftAndRight) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.flip_h = 1;
  const cv::Mat out = Developed(Grid(30, 20), adjustments);
  EXPECT_EQ(out.at<cv::Vec4f>(3, 4), Grid(30, 20).at<cv::Vec4f>(3, 25));
}

TEST_P(FlipExample, MirrorsTopAndBottom) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.flip_v = -1;
  const cv::Mat out = Developed(Grid(30, 20), adjustments);
  EXPECT_EQ(out.at<cv::Vec4f>(3, 4), Grid(30, 20).at<cv::Vec4f>(16, 4));
}

TEST_P(FlipExample, BothAreHalfATurn) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.flip_h = 1;
  adjustments.flip_v = 1;
  cv::Mat turned;
  cv::rotate(Grid(31, 20), turned, cv::ROTATE_180);
  EXPECT_TRUE(SamePixels(Developed(Grid(31, 20), adjustments), turned));
}

TEST_P(FlipExample, MirrorsWideAndTallFrames) {
  for (const cv::Size size : test::kExampleSizes) {
    for (const int axis : {0, 1, -1}) {
      Adjustments adjustments = NeutralAdjustments();
      adjustments.flip_h = axis != 0 ? 1 : 0;
      adjustments.flip_v = axis != 1 ? 1 : 0;
      const cv::Mat image = test::WorkingNoise(size);
      cv::Mat flipped;
      cv::flip(image, flipped, axis);
      EXPECT_TRUE(SamePixels(Developed(image, adjustments), flipped)) << size << axis;
    }
  }
}

TEST_P(RotationExample, PositiveTurnsCounterClockwise) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.rotation = 90;
  const cv::Mat out = Developed(Grid(40, 40), adjustments);
  ASSERT_EQ(out.size(), cv::Size(40, 40));
  // What was to the right of the center is above it.
  const cv::Vec4f above = out.at<cv::Vec4f>(5, 20);
  EXPECT_NEAR(above[0], 0.35, 1e-4);
  EXPECT_NEAR(above[1], 0.20, 1e-4);
}

TEST_P(RotationExample, KeepsTheSizeAndMirrorsIntoTheGaps) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.rotation = 90;
  const cv::Mat out = Developed(Grid(40, 20), adjustments);
  ASSERT_EQ(out.size(), cv::Size(40, 20));
  // 15 to the right of the center is what was 15 below it, row 25 of 20: mirrored, row 14.
  EXPECT_NEAR(out.at<cv::Vec4f>(10, 35)[1], 0.14, 1e-4);
  EXPECT_NEAR(out.at<cv::Vec4f>(10, 25)[1], 0.15, 1e-4);
  EXPECT_NEAR(out.at<cv::Vec4f>(10, 35)[3], 1, 1e-6) << "no transparent corners";
}

TEST_P(RotationExample, SmallAngleAboutTheCenter) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.rotation = 10;
  const cv::Mat out = Developed(Grid(60, 60), adjustments);
  EXPECT_NEAR(out.at<cv::Vec4f>(30, 30)[0], 0.30, 1e-4);
  // A point 20 to the right of the center comes from 20 (cos, sin) of -10 degrees below it.
  const cv::Vec4f right = out.at<cv::Vec4f>(30, 50);
  EXPECT_NEAR(right[0], 0.30 + 0.20 * std::cos(CV_PI / 18), 3e-4);
  EXPECT_NEAR(right[1], 0.30 + 0.20 * std::sin(CV_PI / 18), 3e-4);
}

// A sample position is rounded to 1/32 of a pixel.
TEST_P(RotationExample, ReachesEveryColumnOfAWideFrame) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.rotation = 1;
  const cv::Mat out = Developed(Grid(2048, 100), adjustments);
  for (const int column : {0, 255, 256, 1023, 1024, 1300, 2047}) {
    EXPECT_NEAR(out.at<cv::Vec4f>(50, column)[0], (1024 + (column - 1024) * std::cos(CV_PI / 180)) / 100,
                5e-4)
        << column;
  }
}

TEST_P(PerspectiveExample, HorizontalPullsTheTopInAndTheBottomOut) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.perspective_h = 100;
  const cv::Mat out = Developed(Grid(100, 100), adjustments);
  ASSERT_EQ(out.size(), cv::Size(100, 100));
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 15)[0], 0, 2e-3);
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 50)[0], 0.5, 2e-3);
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 80)[0], 65 / 70.0, 5e-3);
  // To the left of the corner the image is mirrored.
  EXPECT_GT(out.at<cv::Vec4f>(0, 0)[0], 0.15F);
  // The bottom edge spans -15..115 of the frame, so its left end shows column 11.5.
  EXPECT_NEAR(out.at<cv::Vec4f>(99, 0)[0], 15 / 130.0, 5e-3);
}

TEST_P(PerspectiveExample, VerticalMovesTheEdgesInwards) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.perspective_v = 100;
  const cv::Mat out = Developed(Grid(100, 100), adjustments);
  EXPECT_NEAR(out.at<cv::Vec4f>(15, 50)[1], 0, 1e-3);
  EXPECT_NEAR(out.at<cv::Vec4f>(50, 50)[1], 0.5, 1e-3);
  EXPECT_NEAR(out.at<cv::Vec4f>(71, 50)[1], 0.8, 1e-3);
  EXPECT_NEAR(out.at<cv::Vec4f>(71, 20)[0], 0.2, 1e-3);
  // Row -15 / 0.7 = -21.4 is above the edge: the edge row counts twice, so it is 20.4.
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 50)[1], 0.204, 1e-3);
}

TEST_P(PerspectiveExample, ReachesEveryColumnOfAWideFrame) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.perspective_h = 20;
  const cv::Mat out = Developed(Grid(2000, 40), adjustments);
  for (const int column : {60, 255, 256, 1023, 1024, 1300, 1939}) {
    EXPECT_NEAR(out.at<cv::Vec4f>(0, column)[0], (column - 60) / 1880.0 * 20, 2e-3) << column;
  }
}

TEST_P(PerspectiveExample, NegativeValuesGoTheOtherWay) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.perspective_h = -100;
  const cv::Mat out = Developed(Grid(100, 100), adjustments);
  EXPECT_NEAR(out.at<cv::Vec4f>(0, 0)[0], 15 / 130.0, 5e-3);
}

TEST_P(CropExample, TakesFractionsOfTheFrame) {
  const cv::Mat out = Cropped(100, 80, {0.1F, 0.25F, 0.5F, 0.5F});
  ASSERT_EQ(out.size(), cv::Size(50, 40));
  EXPECT_TRUE(SamePixels(out, Grid(100, 80)(cv::Rect(10, 20, 50, 40)).clone()));
  EXPECT_TRUE(out.isContinuous());
}

TEST_P(CropExample, NearlyTheWholeFrameFromTheOriginIsNoCrop) {
  EXPECT_EQ(CroppedSize(1000, 800, {0, 0, 0.995F, 0.995F}), cv::Size(1000, 800));
  EXPECT_EQ(CroppedSize(1000, 800, {0, 0, 0.99F, 0.99F}), cv::Size(1000, 800));
  EXPECT_EQ(CroppedSize(1000, 800, {0, 0, 0.98F, 0.995F}), cv::Size(980, 796));
  EXPECT_EQ(CroppedSize(1000, 800, {0.001F, 0, 0.995F, 0.995F}), cv::Size(995, 796));
  EXPECT_EQ(CroppedSize(1000, 800, {0, 0, 0.995F, 0.98F}), cv::Size(995, 784));
  EXPECT_EQ(CroppedSize(1000, 800, {0, 0.002F, 0.995F, 0.995F}), cv::Size(995, 796));
}

// Either side alone at its bound, and one step of a float below it.
TEST_P(CropExample, NinetyNinePercentIsTheBound) {
  const float below = std::nextafter(0.99F, 0.0F);
  EXPECT_EQ(CroppedSize(1000, 1000, {0, 0, 0.99F, 1}), cv::Size(1000, 1000));
  EXPECT_EQ(CroppedSize(1000, 1000, {0, 0, 1, 0.99F}), cv::Size(1000, 1000));
  EXPECT_EQ(CroppedSize(1000, 1000, {0, 0, below, 1}), cv::Size(static_cast<int>(1000 * below), 1000));
  EXPECT_EQ(CroppedSize(1000, 1000, {0, 0, 1, below}), cv::Size(1000, static_cast<int>(1000 * below)));
}

TEST_P(CropExample, StartsAnywhereInAWideFrame) {
  for (const int width : {257, 1025, 1300, 2049}) {
    for (const int left : {0, 100, 255, 256, 1023, 1024}) {
      if (left + 20 > width) continue;
      const float x = (static_cast<float>(left) + 0.5F) / static_cast<float>(width);
      const cv::Mat out = Cropped(width, 40, {x, 0.25F, 1, 0.5F});
      EXPECT_TRUE(SamePixels(out, Grid(width, 40)(cv::Rect(left, 10, width - left, 20)).clone()))
          << left << " of " << width;
    }
  }
}

TEST_P(CropExample, IsLimitedToTheRemainingArea) {
  EXPECT_EQ(CroppedSize(1000, 800, {0.5F, 0.5F, 1, 1}), cv::Size(500, 400));
}

TEST_P(CropExample, NegativeOriginsStartAtZero) {
  const cv::Mat out = Cropped(100, 80, {-0.2F, -0.5F, 0.5F, 0.5F});
  EXPECT_TRUE(SamePixels(out, Grid(100, 80)(cv::Rect(0, 0, 50, 40)).clone()));
}

TEST_P(CropExample, TenPixelsAreTooFew) {
  EXPECT_EQ(CroppedSize(100, 80, {0.1F, 0, 0.105F, 1}), cv::Size(100, 80));
  EXPECT_EQ(CroppedSize(100, 80, {0.1F, 0, 0.115F, 1}), cv::Size(11, 80));
  EXPECT_EQ(CroppedSize(80, 100, {0.1F, 0, 1, 0.105F}), cv::Size(80, 100));
  EXPECT_EQ(CroppedSize(80, 100, {0.1F, 0, 1, 0.115F}), cv::Size(72, 11));
}

TEST_P(CropExample, BeyondTheFrameIsNoCrop) {
  EXPECT_EQ(CroppedSize(100, 80, {1.5F, 0, 0.5F, 0.5F}), cv::Size(100, 80));
  EXPECT_EQ(CroppedSize(100, 80, {0, 1e30F, 0.5F, 0.5F}), cv::Size(100, 80));
  EXPECT_EQ(CroppedSize(100, 80, {0.5F, 0.5F, 0, 0.5F}), cv::Size(100, 80));
  EXPECT_EQ(CroppedSize(100, 80, {0.5F, 0.5F, 0.5F, -1}), cv::Size(100, 80));
}

TEST_P(CropExample, ANaNOriginStartsAtZero) {
  EXPECT_EQ(CroppedSize(100, 80, {NAN, 0, 0.5F, 0.5F}), cv::Size(50, 40));
  EXPECT_EQ(CroppedSize(100, 80, {0, NAN, 0.5F, 0.5F}), cv::Size(50, 40));
  EXPECT_EQ(CroppedSize(100, 80, {0, 0, NAN, 0.5F}), cv::Size(100, 80));
}

TEST_P(CropExample, ActsOnTheTurnedFrame) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.flip_v = 1;
  adjustments.crop = {0, 0, 0.5F, 0.5F};
  const cv::Mat out = Developed(Grid(100, 80), adjustments);
  ASSERT_EQ(out.size(), cv::Size(50, 40));
  EXPECT_EQ(out.at<cv::Vec4f>(0, 0), Grid(100, 80).at<cv::Vec4f>(79, 0));
}

TEST_P(GeometryExample, NeutralKeepsEveryBit) {
  EXPECT_TRUE(SamePixels(Developed(Grid(30, 20), NeutralAdjustments()), Grid(30, 20)));
}

INSTANTIATE_TEST_SUITE_P(Subjects, FlipExample, test::StageSubjects(), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, RotationExample, test::StageSubjects(), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, PerspectiveExample, test::StageSubjects(), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, CropExample, test::StageSubjects(), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, GeometryExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
