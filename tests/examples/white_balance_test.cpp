// Worked examples of the white balance.
#include "pipeline/stages/white_balance.h"

#include <gtest/gtest.h>

#include "examples/stage_example.h"
#include "reference/white_balance.h"

namespace lumvik {
namespace {

using test::NeutralAdjustments;

class LocusExample : public test::Example<cv::Vec2f(float temperature)> {};

// Of red, green and blue.
class WhiteBalanceGainsExample : public test::Example<cv::Vec3f(float temperature, float tint)> {
 protected:
  cv::Vec3f Gains(float temperature, float tint) const { return GetParam().run(temperature, tint); }
};

class WhiteBalanceExample : public test::PointStageExample {
 protected:
  cv::Vec4f Balanced(const cv::Vec4f& color, float temperature, float tint) const {
    Adjustments adjustments = NeutralAdjustments();
    adjustments.temperature = temperature;
    adjustments.tint = tint;
    return Developed(color, adjustments);
  }
};

cv::Vec2f ReferenceLocus(float temperature) {
  const reference::Chromaticity locus = reference::KelvinToChromaticity(temperature);
  return {locus.x, locus.y};
}

cv::Vec2f EngineLocus(float temperature) {
  const Chromaticity locus = KelvinToChromaticity(temperature);
  return {locus.x, locus.y};
}

cv::Vec3f ReferenceGains(float temperature, float tint) {
  const reference::WhiteBalanceGains gains = reference::ComputeWhiteBalanceGains(temperature, tint);
  return {gains.red, gains.green, gains.blue};
}

cv::Vec3f EngineGains(float temperature, float tint) {
  const WhiteBalanceGains gains = ComputeWhiteBalanceGains(temperature, tint);
  return {gains.red, gains.green, gains.blue};
}

struct GainsRow {
  float temperature;
  float red;
  float blue;
  float red_tolerance;
  float blue_tolerance;
};

// Half a unit of the last digit written.
TEST_P(WhiteBalanceGainsExample, OfATemperature) {
  for (const GainsRow& row :
       {GainsRow{3000, 0.0089F, 2.5374F, 5e-5F, 5e-5F}, GainsRow{5500, 1.144F, 1.133F, 5e-4F, 5e-4F},
        GainsRow{6500, 1.27F, 0.9587F, 5e-3F, 5e-5F}, GainsRow{6504, 1.2704F, 0.9581F, 5e-5F, 5e-5F},
        GainsRow{7500, 1.3354F, 0.8445F, 5e-5F, 5e-5F}, GainsRow{10000, 1.3918F, 0.6834F, 5e-5F, 5e-5F},
        GainsRow{25000, 1.3661F, 0.4717F, 5e-5F, 5e-5F}}) {
    const cv::Vec3f gains = Gains(row.temperature, 0);
    EXPECT_NEAR(gains[0], row.red, row.red_tolerance);
    EXPECT_NEAR(gains[2], row.blue, row.blue_tolerance);
    EXPECT_EQ(gains[1], 1.0F);
  }
}

struct LocusRow {
  float temperature;
  double x;
  double y;
};

// The three pieces of the locus, with the bounds 2222 and 4000 on their lower side; the polynomials in double
// precision. Planck's law itself gives 0.4476, 0.4074 at 2856 K and 0.3451, 0.3516 at 5000 K.
TEST_P(LocusExample, HasThreePieces) {
  const LocusRow rows[] = {
      {1667, 0.564638, 0.402887},    {2000, 0.526903, 0.413265},    {2222, 0.503188, 0.415251},
      {2222.5F, 0.503136, 0.415257}, {2300, 0.495342, 0.415216},    {2856, 0.447071, 0.407509},
      {4000, 0.380528, 0.376733},    {4000.5F, 0.380438, 0.376672}, {4100, 0.376132, 0.373957},
      {5000, 0.344992, 0.351587},    {10000, 0.280698, 0.288306},   {25000, 0.252473, 0.252255}};
  for (const LocusRow& row : rows) {
    const cv::Vec2f locus = GetParam().run(row.temperature);
    EXPECT_NEAR(locus[0], row.x, 1e-6) << row.temperature;
    EXPECT_NEAR(locus[1], row.y, 2e-6) << row.temperature;
  }
}

TEST_P(LocusExample, EndsAt1667And25000Kelvin) {
  EXPECT_EQ(GetParam().run(100)[0], GetParam().run(1667)[0]);
  EXPECT_EQ(GetParam().run(100)[1], GetParam().run(1667)[1]);
  EXPECT_EQ(GetParam().run(90000)[0], GetParam().run(25000)[0]);
  EXPECT_EQ(GetParam().run(90000)[1], GetParam().run(25000)[1]);
  EXPECT_NE(GetParam().run(1668)[0], GetParam().run(1667)[0]);
  EXPECT_NE(GetParam().run(24999)[0], GetParam().run(25000)[0]);
}

// The ratio of the reference white to itself is exactly 1: the gains are the sums of the matrix rows.
TEST_P(WhiteBalanceGainsExample, OfTheReferenceTemperature) {
  const double green = -0.9689 + 1.8758 + 0.0415;
  EXPECT_NEAR(Gains(6504, 0)[0], (3.2406 - 1.5372 - 0.4986) / green, 1e-6);
  EXPECT_NEAR(Gains(6504, 0)[2], (0.0557 - 0.204 + 1.057) / green, 1e-6);
}

TEST_P(WhiteBalanceGainsExample, TintActsOnGreenAlone) {
  EXPECT_NEAR(Gains(5500, 150)[1], 0.85, 1e-6);
  EXPECT_NEAR(Gains(5500, -150)[1], 1.15, 1e-6);
  EXPECT_NEAR(Gains(5500, 1000)[1], 0, 1e-6);
  EXPECT_EQ(Gains(5500, 150)[0], Gains(5500, 0)[0]);
  EXPECT_EQ(Gains(5500, 150)[2], Gains(5500, 0)[2]);
}

TEST_P(WhiteBalanceExample, TintOfAThousandRemovesGreen) {
  EXPECT_NEAR(Balanced({0.5F, 0.5F, 0.5F, 1}, 5500, 1000)[1], 0, 1e-6);
  EXPECT_EQ(Balanced({0.5F, 0.5F, 0.5F, 1}, 5500, 2000)[1], 0) << "a negative gain ends at black";
}

TEST_P(WhiteBalanceExample, MultipliesAndClampsEveryColorChannel) {
  const cv::Vec4f pixel = Balanced({0.5F, 0.5F, 0.5F, 1}, 5500, 0);
  EXPECT_NEAR(pixel[0], 0.572, 3e-4);
  EXPECT_EQ(pixel[1], 0.5F);
  EXPECT_NEAR(pixel[2], 0.5665, 3e-4);
  const cv::Vec4f over = Balanced({1.5F, 1.5F, 1.5F, 1}, 5500, 0);
  EXPECT_EQ(over, cv::Vec4f(1, 1, 1, 1)) << "the channel with gain 1 is clamped too";
  const cv::Vec4f under = Balanced({-0.1F, -0.1F, -0.1F, 1}, 5500, 0);
  EXPECT_EQ(under, cv::Vec4f(0, 0, 0, 1));
}

TEST_P(WhiteBalanceExample, ReferenceTemperatureIsNotNeutral) {
  EXPECT_NEAR(Balanced({0.5F, 0.5F, 0.5F, 1}, 6504, 0)[0], 0.6352, 1e-4);
}

TEST_P(WhiteBalanceExample, KeepsAlpha) {
  EXPECT_EQ(Balanced({0.5F, 0.5F, 0.5F, 0.3F}, 5500, 40)[3], 0.3F);
  EXPECT_EQ(Balanced({0.5F, 0.5F, 0.5F, 1.7F}, 5500, 40)[3], 1.7F);
}

INSTANTIATE_TEST_SUITE_P(Subjects, LocusExample, test::ReferenceAndEngine(ReferenceLocus, EngineLocus),
                         test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, WhiteBalanceGainsExample,
                         test::ReferenceAndEngine(ReferenceGains, EngineGains), test::SubjectName());
INSTANTIATE_TEST_SUITE_P(Subjects, WhiteBalanceExample, test::StageSubjects(), test::SubjectName());

}  // namespace
}  // namespace lumvik
