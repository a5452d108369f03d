#include "reference/white_balance.h"

#include <gtest/gtest.h>

#include "reference/pixel.h"

namespace lumvik::reference {
namespace {

cv::Vec4f Balanced(const cv::Vec4f& color, float temperature, float tint) {
  cv::Mat working = Uniform(1, 1, color);
  WhiteBalance(working, temperature, tint);
  return working.at<cv::Vec4f>(0, 0);
}

struct GainsRow {
  float temperature;
  float red;
  float blue;
  float red_tolerance;
  float blue_tolerance;
};

class WhiteBalanceTable : public testing::TestWithParam<GainsRow> {};

TEST_P(WhiteBalanceTable, GainsOfATemperature) {
  const WhiteBalanceGains gains = ComputeWhiteBalanceGains(GetParam().temperature, 0);
  EXPECT_NEAR(gains.red, GetParam().red, GetParam().red_tolerance);
  EXPECT_NEAR(gains.blue, GetParam().blue, GetParam().blue_tolerance);
  EXPECT_EQ(gains.green, 1.0F);
}

// Half a unit of the last digit written.
INSTANTIATE_TEST_SUITE_P(Reference, WhiteBalanceTable,
                         testing::Values(GainsRow{3000, 0.0089F, 2.5374F, 5e-5F, 5e-5F},
                                         GainsRow{5500, 1.144F, 1.133F, 5e-4F, 5e-4F},
                                         GainsRow{6500, 1.27F, 0.9587F, 5e-3F, 5e-5F},
                                         GainsRow{6504, 1.2704F, 0.9581F, 5e-5F, 5e-5F},
                                         GainsRow{7500, 1.3354F, 0.8445F, 5e-5F, 5e-5F},
                                         GainsRow{10000, 1.3918F, 0.6834F, 5e-5F, 5e-5F},
                                         GainsRow{25000, 1.3661F, 0.4717F, 5e-5F, 5e-5F}));

struct LocusRow {
  float temperature;
  double x;
  double y;
};

// The three pieces of the locus, with the bounds 2222 and 4000 on their lower side; the polynomials in double
// precision. Planck's law itself gives 0.4476, 0.4074 at 2856 K and 0.3451, 0.3516 at 5000 K.
TEST(WhiteBalance, LocusPieces) {
  const LocusRow rows[] = {{1667, 0.564638, 0.402887},  {2000, 0.526903, 0.413265},
                           {2222, 0.503188, 0.415251},  {2300, 0.495342, 0.415216},
                           {2856, 0.447071, 0.407509},  {4000, 0.380528, 0.376733},
                           {4100, 0.376132, 0.373957},  {5000, 0.344992, 0.351587},
                           {10000, 0.280698, 0.288306}, {25000, 0.252473, 0.252255}};
  for (const LocusRow& row : rows) {
    const Chromaticity locus = KelvinToChromaticity(row.temperature);
    EXPECT_NEAR(locus.x, row.x, 1e-6) << row.temperature;
    EXPECT_NEAR(locus.y, row.y, 2e-6) << row.temperature;
  }
}

TEST(WhiteBalance, TemperatureIsHeldToTheLocus) {
  EXPECT_EQ(KelvinToChromaticity(100).x, KelvinToChromaticity(1667).x);
  EXPECT_EQ(KelvinToChromaticity(100).y, KelvinToChromaticity(1667).y);
  EXPECT_EQ(KelvinToChromaticity(90000).x, KelvinToChromaticity(25000).x);
  EXPECT_EQ(KelvinToChromaticity(90000).y, KelvinToChromaticity(25000).y);
  EXPECT_NE(KelvinToChromaticity(1700).x, KelvinToChromaticity(1667).x);
}

TEST(WhiteBalance, TintActsOnGreenAlone) {
  EXPECT_NEAR(ComputeWhiteBalanceGains(5500, 150).green, 0.85, 1e-6);
  EXPECT_NEAR(ComputeWhiteBalanceGains(5500, -150).green, 1.15, 1e-6);
  EXPECT_EQ(ComputeWhiteBalanceGains(5500, 150).red, ComputeWhiteBalanceGains(5500, 0).red);
  EXPECT_EQ(ComputeWhiteBalanceGains(5500, 150).blue, ComputeWhiteBalanceGains(5500, 0).blue);
}

TEST(WhiteBalance, TintOfAThousandRemovesGreen) {
  EXPECT_NEAR(ComputeWhiteBalanceGains(5500, 1000).green, 0, 1e-6);
  EXPECT_NEAR(Balanced({0.5F, 0.5F, 0.5F, 1}, 5500, 1000)[1], 0, 1e-6);
  EXPECT_EQ(Balanced({0.5F, 0.5F, 0.5F, 1}, 5500, 2000)[1], 0) << "a negative gain ends at black";
}

TEST(WhiteBalance, MultipliesAndClampsEveryColorChannel) {
  const cv::Vec4f pixel = Balanced({0.5F, 0.5F, 0.5F, 1}, 5500, 0);
  EXPECT_NEAR(pixel[0], 0.572, 3e-4);
  EXPECT_EQ(pixel[1], 0.5F);
  EXPECT_NEAR(pixel[2], 0.5665, 3e-4);
  const cv::Vec4f over = Balanced({1.5F, 1.5F, 1.5F, 1}, 5500, 0);
  EXPECT_EQ(over, cv::Vec4f(1, 1, 1, 1)) << "the channel with gain 1 is clamped too";
  const cv::Vec4f under = Balanced({-0.1F, -0.1F, -0.1F, 1}, 5500, 0);
  EXPECT_EQ(under, cv::Vec4f(0, 0, 0, 1));
}

TEST(WhiteBalance, ReferenceTemperatureIsNotNeutral) {
  EXPECT_NEAR(Balanced({0.5F, 0.5F, 0.5F, 1}, 6504, 0)[0], 0.6352, 1e-4);
}

TEST(WhiteBalance, KeepsAlpha) {
  EXPECT_EQ(Balanced({0.5F, 0.5F, 0.5F, 0.3F}, 5500, 40)[3], 0.3F);
  EXPECT_EQ(Balanced({0.5F, 0.5F, 0.5F, 1.7F}, 5500, 40)[3], 1.7F);
}

}  // namespace
}  // namespace lumvik::reference
