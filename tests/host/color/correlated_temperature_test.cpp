// Correlated color temperatures of lights and of the white balance of cameras.
#include "color/correlated_temperature.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace lumvik::host::test {
namespace {

// CIE 1931 chromaticities with Y = 1.
std::array<double, 3> LightOf(double x, double y) {
  return {x / y, 1, (1 - x - y) / y};
}

// A Planckian radiator by the cubic approximation of Kim et al., which errs by less than 1e-3 in u and v.
std::array<double, 3> PlanckianLight(double kelvin) {
  const double t = 1000 / kelvin;
  const double x = kelvin < 4000 ? ((-0.2661239 * t - 0.2343589) * t + 0.8776956) * t + 0.179910
                                 : ((-3.0258469 * t + 2.1070379) * t + 0.2226347) * t + 0.240390;
  const double y = kelvin < 2222   ? ((-1.1063814 * x - 1.34811020) * x + 2.18555832) * x - 0.20219683
                   : kelvin < 4000 ? ((-0.9549476 * x - 1.37418593) * x + 2.09137015) * x - 0.16748867
                                   : ((3.0817580 * x - 5.87338670) * x + 3.75112997) * x - 0.37001483;
  return LightOf(x, y);
}

TEST(CorrelatedTemperatureTest, StandardIlluminantsHaveTheirTemperature) {
  struct Illuminant {
    double x;
    double y;
    double kelvin;
    double duv;
  };
  // A, D50, D55, D65, D75, E; F2 and F11, fluorescent.
  constexpr Illuminant kIlluminants[] = {
      {0.44758, 0.40745, 2856, 0},      {0.34567, 0.35850, 5003, 0.0032}, {0.33242, 0.34743, 5503, 0.0033},
      {0.31271, 0.32902, 6504, 0.0032}, {0.29902, 0.31485, 7504, 0.0031}, {1.0 / 3, 1.0 / 3, 5454, -0.0044},
      {0.37208, 0.37529, 4230, 0.0018}, {0.38052, 0.37713, 4000, 0.0001},
  };
  for (const Illuminant& light : kIlluminants) {
    const WhitePoint white = WhitePointOf(LightOf(light.x, light.y));
    EXPECT_NEAR(white.temperature / light.kelvin, 1, 0.003) << light.kelvin;
    EXPECT_NEAR(white.tint, 3000 * light.duv, 1.0) << light.kelvin;
  }
}

TEST(CorrelatedTemperatureTest, PlanckianLightHasNoTint) {
  for (double kelvin = 1800; kelvin < 20000; kelvin *= 1.02) {
    const WhitePoint white = WhitePointOf(PlanckianLight(kelvin));
    EXPECT_NEAR(1e6 / white.temperature, 1e6 / kelvin, 2.5) << kelvin;
    EXPECT_NEAR(white.tint, 0, 2.5) << kelvin;
  }
}

TEST(CorrelatedTemperatureTest, WhatIsNotALightIsUnknown) {
  const double nan = std::nan("");
  const std::array<double, 3> impossible[] = {{0, 0, 0},   {-1, 1, 1},  {1, -1, 1},      {1, 1, -5},
                                              {nan, 1, 1}, {1, nan, 1}, {1, 1, HUGE_VAL}};
  for (const auto& xyz : impossible) {
    EXPECT_TRUE(std::isnan(WhitePointOf(xyz).temperature)) << xyz[0] << ' ' << xyz[1] << ' ' << xyz[2];
    EXPECT_TRUE(std::isnan(WhitePointOf(xyz).tint));
  }
  EXPECT_TRUE(std::isnan(WhitePointOf(LightOf(0.7, 0.29)).temperature));  // below 1667 kelvin: deep red
}

TEST(CorrelatedTemperatureTest, ACameraIsNeutralInTheLightThatItsMultipliersInvert) {
  constexpr ColorMatrix kMatrix = {{{0.74, -0.24, -0.06}, {-0.54, 1.32, 0.25}, {-0.10, 0.18, 0.66}}};
  for (const double kelvin : {2500.0, 4000.0, 5500.0, 9000.0}) {
    const std::array<double, 3> light = PlanckianLight(kelvin);
    std::array<double, 3> multipliers{};
    for (std::size_t i = 0; i < 3; ++i) {
      multipliers[i] = 7 / (kMatrix[i][0] * light[0] + kMatrix[i][1] * light[1] + kMatrix[i][2] * light[2]);
    }
    const WhitePoint expected = WhitePointOf(light);
    const WhitePoint white = WhitePointOfCamera(kMatrix, multipliers);
    EXPECT_NEAR(white.temperature, expected.temperature, 0.01);
    EXPECT_NEAR(white.tint, expected.tint, 0.001);
  }
}

TEST(CorrelatedTemperatureTest, ACameraWithoutMatrixOrMultipliersIsUnknown) {
  constexpr ColorMatrix kIdentity = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  EXPECT_FALSE(std::isnan(WhitePointOfCamera(kIdentity, {1, 1, 1}).temperature));
  EXPECT_TRUE(std::isnan(WhitePointOfCamera({}, {1, 1, 1}).temperature));
  for (const double none : {0.0, -1.0, std::nan("")}) {
    EXPECT_TRUE(std::isnan(WhitePointOfCamera(kIdentity, {1, none, 1}).temperature));
  }
}

}  // namespace
}  // namespace lumvik::host::test
