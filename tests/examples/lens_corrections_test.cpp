// Worked examples of the lens corrections.
#include <gtest/gtest.h>

#include <utility>

#include "examples/stage_example.h"
#include "reference/hsl_color.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;
using test::SamePixels;
using test::Uniform;

using reference::Hsl;
using reference::hsl_to_rgb;
using reference::Rgb;
using reference::rgb_to_hsl;

// Red and blue hold the column, green the row, both in hundredths.
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

class LensCorrectionsExample : public test::StageExample {
 protected:
  cv::Mat Corrected(const cv::Mat& input, float Adjustments::*field, float value) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.*field = value;
    return Developed(input, adjustments);
  }
};

class DistortionExample : public LensCorrectionsExample {};
class ChromaticAberrationExample : public LensCorrectionsExample {};
class LensVignettingExample : public LensCorrectionsExample {};

class DefringeExample : public test::PointStageExample {
 protected:
  Hsl Defringed(float defringe, float h, float s, float l) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.defringe = defringe;
    const Rgb rgb = hsl_to_rgb(h, s, l);
    const cv::Vec4f pixel = Developed({rgb.r, rgb.g, rgb.b, 1}, adjustments);
    return rgb_to_hsl(pixel[0], pixel[1], pixel[2]);
  }
};

TEST_P(LensCorrectionsExample, NegativeStrengthsKeepEveryBit) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.ca_correction = -5;
  adjustments.lens_vignette = -50;
  adjustments.defringe = -1;
  EXPECT_TRUE(SamePixels(Developed(Ramp(200, 10), adjustments), Ramp(200, 10)));
}

// The distance of a sample from where the map points is at most half of OpenCV's 1/32 pixel grid.
constexpr double kMapTolerance = 0.01 / 64 + 1e-6;

TEST_P(DistortionExample, PositiveSamplesNearerTheCenter) {
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

TEST_P(DistortionExample, NegativeSamplesBeyondTheEdgeMirrored) {
  const cv::Mat out = Corrected(Ramp(100, 100), &Adjustments::distortion, -100);
  // nx = -1, f = 1.5, column -25: the edge column counts twice, so it is column 24.
  EXPECT_NEAR(out.at<cv::Vec4f>(50, 0)[0], 0.24, kMapTolerance);
  EXPECT_NEAR(out.at<cv::Vec4f>(50, 30)[0], (50 - 20 * 1.08) / 100, kMapTolerance);
}

TEST_P(DistortionExample, ReachesEveryColumnOfAWideFrame) {
  const cv::Mat out = Corrected(Ramp(2048, 4), &Adjustments::distortion, 20);
  for (const int column : {0, 255, 256, 1023, 1024, 1300, 2047}) {
    const double nx = (column - 1024) / 1024.0;
    EXPECT_NEAR(out.at<cv::Vec4f>(2, column)[0], (1024 + (column - 1024) * (1 - 0.1 * nx * nx)) / 100,
                kMapTolerance + 1e-5)
        << column;
  }
}

TEST_P(DistortionExample, TheLongerSideIsTheUnit) {
  const cv::Mat wide = Corrected(Ramp(100, 20), &Adjustments::distortion, 50);
  EXPECT_NEAR(wide.at<cv::Vec4f>(10, 10)[0], (50 - 40 * 0.84) / 100, kMapTolerance);
  const cv::Mat tall = Corrected(Ramp(40, 100), &Adjustments::distortion, 50);
  EXPECT_NEAR(tall.at<cv::Vec4f>(50, 10)[0], (20 - 10 * (1 - 0.04 * 0.25)) / 100, kMapTolerance);
  EXPECT_NEAR(tall.at<cv::Vec4f>(10, 20)[1], (50 - 40 * (1 - 0.64 * 0.25)) / 100, kMapTolerance);
}

TEST_P(ChromaticAberrationExample, RedGrowsAndBlueShrinks) {
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

TEST_P(ChromaticAberrationExample, ShiftsRedOutwardsAndBlueInwards) {
  const cv::Mat input = Ramp(1000, 40);
  const cv::Mat out = Corrected(input, &Adjustments::ca_correction, 100);
  // Pixel 900 of the red plane is pixel 901 of the enlarged one, whose center is at 901.5 / 1.003 - 0.5 of
  // the source; blue's is pixel 899 of the reduced one.
  const cv::Vec4f pixel = out.at<cv::Vec4f>(20, 900);
  EXPECT_NEAR(pixel[0], (901.5 / 1.003 - 0.5) / 100, 1e-4);
  EXPECT_NEAR(pixel[2], (899.5 / 0.997 - 0.5) / 100, 1e-4);
  EXPECT_EQ(pixel[1], input.at<cv::Vec4f>(20, 900)[1]);
}

// Enlarged to 1004, red loses two columns on either side; blue shrinks to 996.
TEST_P(ChromaticAberrationExample, CropsAndPadsBothSidesAlike) {
  const cv::Mat out = Corrected(Ramp(1000, 40), &Adjustments::ca_correction, 400 / 3.0F);
  EXPECT_NEAR(out.at<cv::Vec4f>(20, 900)[0], (902.5 / 1.004 - 0.5) / 100, 1e-4);
  const cv::Mat uniform = Corrected(Uniform(1000, 40, {1, 1, 1, 1}), &Adjustments::ca_correction, 400 / 3.0F);
  for (const int column : {0, 1, 998, 999}) EXPECT_EQ(uniform.at<cv::Vec4f>(20, column)[2], 0.0F) << column;
  for (const int column : {2, 997}) EXPECT_NEAR(uniform.at<cv::Vec4f>(20, column)[2], 1, 1e-6) << column;
}

TEST_P(ChromaticAberrationExample, ActsAlongColumnsToo) {
  const cv::Mat out = Corrected(Uniform(40, 1000, {0.5F, 0.6F, 0.7F, 1}), &Adjustments::ca_correction, 100);
  for (const int row : {0, 998, 999}) EXPECT_EQ(out.at<cv::Vec4f>(row, 20)[2], 0.0F) << row;
  for (const int row : {1, 500, 997}) EXPECT_NEAR(out.at<cv::Vec4f>(row, 20)[2], 0.7, 1e-6) << row;
  cv::Mat ramp = Ramp(1000, 40).t();
  ramp = Corrected(ramp, &Adjustments::ca_correction, 100);
  EXPECT_NEAR(ramp.at<cv::Vec4f>(900, 20)[0], (901.5 / 1.003 - 0.5) / 100, 1e-4);
  EXPECT_NEAR(ramp.at<cv::Vec4f>(900, 20)[2], (899.5 / 0.997 - 0.5) / 100, 1e-4);
}

TEST_P(ChromaticAberrationExample, PlaneOnePixelSmallerThanTheFrame) {
  const cv::Mat out = Corrected(Uniform(1000, 40, {0.5F, 0.6F, 0.7F, 0.8F}), &Adjustments::ca_correction, 33);
  EXPECT_NEAR(out.at<cv::Vec4f>(20, 0)[2], 0.7, 1e-6);
  EXPECT_EQ(out.at<cv::Vec4f>(20, 999)[2], 0.0F);
}

TEST_P(ChromaticAberrationExample, FaintSettingsActOnWideFrames) {
  const cv::Mat out = Corrected(Uniform(20000, 1, {0.5F, 0.6F, 0.7F, 0.8F}), &Adjustments::ca_correction, 1);
  EXPECT_EQ(out.at<cv::Vec4f>(0, 19999)[2], 0.0F) << "19999.4 columns of blue";
}

TEST_P(ChromaticAberrationExample, LeavesTheOtherCorrectionsDisabled) {
  const cv::Mat over = Uniform(8, 8, {0.9F, -0.5F, 1.5F, 1});
  EXPECT_TRUE(SamePixels(Corrected(over, &Adjustments::ca_correction, 1), over)) << "too small to be resized";
}

TEST_P(LensVignettingExample, CornersAreBrightenedByHalf) {
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

TEST_P(LensVignettingExample, GrowsWithTheSquareOfTheDistance) {
  for (const cv::Size size : {cv::Size(1300, 70), cv::Size(70, 1300), cv::Size(2049, 3)}) {
    const cv::Mat working = Uniform(size.width, size.height, {0.5F, 0.5F, 0.5F, 1});
    const cv::Mat out = Corrected(working, &Adjustments::lens_vignette, 80);
    const double cx = size.width / 2.0;
    const double cy = size.height / 2.0;
    for (const cv::Point at : {cv::Point(0, 0), cv::Point(255, 1), cv::Point(256, 2), cv::Point(1024, 2),
                               cv::Point(2, 1024), cv::Point(size.width - 1, size.height - 1)}) {
      if (!cv::Rect({0, 0}, size).contains(at)) continue;
      const double squared = ((at.x - cx) * (at.x - cx) + (at.y - cy) * (at.y - cy)) / (cx * cx + cy * cy);
      EXPECT_NEAR(out.at<cv::Vec4f>(at)[1], 0.5 * (1 + 0.4 * squared), 1e-6) << size << at;
    }
  }
}

TEST_P(LensVignettingExample, Clamps) {
  const cv::Mat out = Corrected(Uniform(4, 4, {0.9F, -0.5F, 0.1F, 1}), &Adjustments::lens_vignette, 100);
  EXPECT_EQ(out.at<cv::Vec4f>(0, 0)[0], 1.0F);
  EXPECT_EQ(out.at<cv::Vec4f>(0, 0)[1], 0.0F);
}

TEST_P(DefringeExample, DampsSaturatedFringes) {
  EXPECT_NEAR(Defringed(100, 0.75F, 0.8F, 0.5F).s, 0.4, 1e-5);
  EXPECT_NEAR(Defringed(100, 0.3F, 0.8F, 0.5F).s, 0.4, 1e-5);
  EXPECT_NEAR(Defringed(40, 0.75F, 0.8F, 0.5F).s, 0.8 * 0.8, 1e-5);
  EXPECT_NEAR(Defringed(40, 0.75F, 0.8F, 0.4F).h, 0.75, 1e-5);
  EXPECT_NEAR(Defringed(40, 0.75F, 0.8F, 0.4F).l, 0.4, 1e-6);
}

TEST_P(DefringeExample, PaleFringesStay) {
  // At 40 the limit is 0.3.
  EXPECT_NEAR(Defringed(40, 0.75F, 0.29F, 0.5F).s, 0.29, 1e-6);
  EXPECT_NEAR(Defringed(40, 0.75F, 0.31F, 0.5F).s, 0.31 * 0.8, 1e-5);
}

TEST_P(DefringeExample, OtherHuesStay) {
  for (const float hue : {0.0F, 0.1F, 0.24F, 0.41F, 0.5F, 0.64F, 0.86F}) {
    EXPECT_NEAR(Defringed(100, hue, 0.8F, 0.5F).s, 0.8, 1e-5) << hue;
  }
  for (const float hue : {0.26F, 0.39F, 0.66F, 0.84F}) {
    EXPECT_NEAR(Defringed(100, hue, 0.8F, 0.5F).s, 0.4, 1e-5) << hue;
  }
}

TEST_P(DefringeExample, BoundsAreStrict) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.defringe = 100;
  const std::pair<float, cv::Vec4f> hues[] = {{0.25F, {0.5F, 1, 0, 1}},
                                              {0.4F, {0, 1, 0.4F, 1}},
                                              {0.65F, {0, 0.1000001F, 1, 1}},
                                              {0.85F, {1, 0, 0.9F, 1}}};
  for (const auto& [hue, color] : hues) {
    ASSERT_EQ(rgb_to_hsl(color[0], color[1], color[2]).h, hue);
    EXPECT_EQ(Developed(color, adjustments), color) << hue;
  }
  adjustments.defringe = 50;
  const cv::Vec4f at_the_limit(0.5F, 0.375F, 0.625F, 1);
  ASSERT_EQ(rgb_to_hsl(at_the_limit[0], at_the_limit[1], at_the_limit[2]).s, 0.25F);
  EXPECT_EQ(Developed(at_the_limit, adjustments), at_the_limit);
}

TEST_P(DefringeExample, GrayStays) {
  Adjustments adjustments = NeutralAdjustments();
  adjustments.defringe = 100;
  const cv::Vec4f gray(0.4F, 0.4F, 0.4F, 1);
  EXPECT_EQ(Developed(gray, adjustments), gray);
}

INSTANTIATE_TEST_SUITE_P(Subjects, LensCorrectionsExample, test::StageSubjects(), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, DistortionExample, test::StageSubjects(), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, ChromaticAberrationExample, test::StageSubjects(), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, LensVignettingExample, test::StageSubjects(), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, DefringeExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
