// Import of the white balance of Camera Raw, which is absolute, relative to that of the camera.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "settings/settings_import.h"

namespace lumvik::host::test {
namespace {

using WhiteBalanceProperties = std::vector<std::pair<std::string, std::string>>;

constexpr WhitePoint kAsShot = {5000, 8};

SettingsImport ImportedWhiteBalance(const WhiteBalanceProperties& properties,
                                    const WhitePoint& as_shot = kAsShot) {
  CameraRawSettings from;
  for (const auto& [name, value] : properties) from.properties.push_back({name, {value}});
  from.as_shot = as_shot;
  from.no_as_shot = "unknown for a reason";
  return ImportSettings(from);
}

ImportedProperty Reported(const SettingsImport& import, const std::string& name) {
  for (const ImportedProperty& property : import.properties) {
    if (property.name == name) return property;
  }
  return {};
}

double Imported(const SettingsImport& import, const std::string& key) {
  const auto found = import.settings.find(key);
  return found == import.settings.end() ? std::nan("") : std::get<float>(found->second);
}

TEST(WhiteBalanceImportTest, TheTemperatureIsMappedByMiredDifference) {
  for (const double kelvin : {2500.0, 4000.0, 5000.0, 5800.0, 9000.0}) {
    const SettingsImport import = ImportedWhiteBalance({{"Temperature", std::to_string(kelvin)}});
    EXPECT_NEAR(1e6 / Imported(import, "temperature"), 1e6 / 6500 + 1e6 / kelvin - 1e6 / 5000, 1e-3);
    EXPECT_EQ(Reported(import, "Temperature").outcome, Outcome::kScaled);
    EXPECT_EQ(Reported(import, "Temperature").key, "temperature");
    EXPECT_EQ(Reported(import, "Temperature").note, "6500 plus the difference in mired from 5000 as shot");
  }
}

TEST(WhiteBalanceImportTest, TheTintIsMappedByDifference) {
  const SettingsImport import = ImportedWhiteBalance({{"Tint", "+12.5"}});
  EXPECT_EQ(import.settings, (Settings{{"tint", 4.5F}}));
  EXPECT_EQ(Reported(import, "Tint").outcome, Outcome::kScaled);
  EXPECT_EQ(Reported(import, "Tint").note, "minus 8 as shot");
}

TEST(WhiteBalanceImportTest, TheWhiteBalanceAsShotInNumbersIsNeutral) {
  for (const double kelvin : {2000.0, 3333.0, 5213.7, 6500.0, 12345.0}) {
    const SettingsImport import = ImportedWhiteBalance(
        {{"WhiteBalance", "Custom"}, {"Temperature", std::to_string(kelvin)}, {"Tint", "-7"}}, {kelvin, -7});
    EXPECT_EQ(import.settings, (Settings{{"temperature", 6500.0F}, {"tint", 0.0F}})) << kelvin;
    EXPECT_EQ(Reported(import, "WhiteBalance").outcome, Outcome::kIgnored);
    EXPECT_EQ(Reported(import, "WhiteBalance").note, "given by Temperature and Tint");
  }
}

TEST(WhiteBalanceImportTest, ValuesOutOfRangeAreClamped) {
  const SettingsImport warm = ImportedWhiteBalance({{"Temperature", "50000"}, {"Tint", "+150"}}, {2000, -90});
  EXPECT_EQ(warm.settings, (Settings{{"temperature", 25000.0F}, {"tint", 150.0F}}));
  EXPECT_EQ(Reported(warm, "Temperature").note,
            "6500 plus the difference in mired from 2000 as shot, clamped to 1667..25000");
  EXPECT_EQ(Reported(warm, "Tint").note, "minus -90 as shot, clamped to -150..150");
  const SettingsImport cold = ImportedWhiteBalance({{"Temperature", "1500"}, {"Tint", "-150"}}, {9000, 30});
  EXPECT_EQ(cold.settings, (Settings{{"temperature", 1667.0F}, {"tint", -150.0F}}));
}

TEST(WhiteBalanceImportTest, AsShotIsNeutralWhateverItsNumbers) {
  for (const WhitePoint& as_shot : {kAsShot, WhitePoint()}) {
    const SettingsImport import = ImportedWhiteBalance({{"WhiteBalance", "As Shot"},
                                                        {"Temperature", "4900"},
                                                        {"Tint", "+9"},
                                                        {"IncrementalTemperature", "+9"},
                                                        {"IncrementalTint", "+9"}},
                                                       as_shot);
    EXPECT_EQ(import.settings, (Settings{{"temperature", 6500.0F}, {"tint", 0.0F}}));
    for (const char* name : {"Temperature", "Tint", "IncrementalTemperature", "IncrementalTint"}) {
      EXPECT_EQ(Reported(import, name).outcome, Outcome::kIgnored);
      EXPECT_EQ(Reported(import, name).note, "the white balance is As Shot");
    }
  }
}

TEST(WhiteBalanceImportTest, WithoutTheWhiteBalanceAsShotNumbersAreIgnored) {
  const SettingsImport import = ImportedWhiteBalance({{"Temperature", "4900"}, {"Tint", "+9"}}, {});
  EXPECT_TRUE(import.settings.empty());
  for (const char* name : {"Temperature", "Tint"}) {
    EXPECT_EQ(Reported(import, name).outcome, Outcome::kIgnored);
    EXPECT_EQ(Reported(import, name).key, "");
    EXPECT_EQ(Reported(import, name).note, "unknown for a reason");
  }
}

TEST(WhiteBalanceImportTest, ThatInTheFileTakesPrecedence) {
  const WhiteBalanceProperties properties = {
      {"Temperature", "4900"}, {"Tint", "+9"}, {"AsShotTemperature", "4900"}, {"AsShotTint", "+9"}};
  for (const WhitePoint& as_shot : {kAsShot, WhitePoint()}) {
    const SettingsImport import = ImportedWhiteBalance(properties, as_shot);
    EXPECT_EQ(import.settings, (Settings{{"temperature", 6500.0F}, {"tint", 0.0F}}));
    EXPECT_EQ(Reported(import, "AsShotTemperature").outcome, Outcome::kIgnored);
    EXPECT_EQ(Reported(import, "AsShotTint").note, "Temperature and Tint are relative to it");
  }
  for (const char* nothing : {"0", "-5000", "ten", ""}) {
    EXPECT_EQ(ImportedWhiteBalance({{"Temperature", "5000"}, {"AsShotTemperature", nothing}}).settings,
              (Settings{{"temperature", 6500.0F}}));
  }
}

TEST(WhiteBalanceImportTest, APresetNeedsItsNumbers) {
  for (const char* preset : {"Daylight", "Auto", "Custom", ""}) {
    const SettingsImport import = ImportedWhiteBalance({{"WhiteBalance", preset}});
    EXPECT_TRUE(import.settings.empty());
    EXPECT_EQ(Reported(import, "WhiteBalance").outcome, Outcome::kIgnored);
    EXPECT_EQ(Reported(import, "WhiteBalance").note, "its temperature is not in the file");
    EXPECT_NEAR(
        Imported(ImportedWhiteBalance({{"WhiteBalance", preset}, {"Temperature", "5500"}}), "temperature"),
        1e6 / (1e6 / 6500 + 1e6 / 5500 - 1e6 / 5000), 0.01);
  }
}

TEST(WhiteBalanceImportTest, IncrementsAreMiredsAndTint) {
  const SettingsImport import =
      ImportedWhiteBalance({{"IncrementalTemperature", "+25"}, {"IncrementalTint", "-10"}}, {});
  EXPECT_NEAR(1e6 / Imported(import, "temperature"), 1e6 / 6500 - 25, 1e-3);
  EXPECT_EQ(Imported(import, "tint"), -10);
  EXPECT_EQ(Reported(import, "IncrementalTemperature").outcome, Outcome::kScaled);
  EXPECT_EQ(Reported(import, "IncrementalTemperature").note, "6500, warmer by 1 mired each");
  EXPECT_EQ(Reported(import, "IncrementalTint").outcome, Outcome::kTaken);
}

TEST(WhiteBalanceImportTest, NumbersOfTheLightWinOverIncrements) {
  WhiteBalanceProperties properties = {
      {"IncrementalTemperature", "+25"}, {"IncrementalTint", "-10"}, {"Temperature", "5000"}, {"Tint", "8"}};
  for (int i = 0; i < 2; ++i) {
    const SettingsImport import = ImportedWhiteBalance(properties);
    EXPECT_EQ(import.settings, (Settings{{"temperature", 6500.0F}, {"tint", 0.0F}}));
    EXPECT_EQ(Reported(import, "IncrementalTemperature").note, "given by Temperature");
    EXPECT_EQ(Imported(ImportedWhiteBalance(properties, {}), "tint"), -10);
    std::reverse(properties.begin(), properties.end());
  }
}

TEST(WhiteBalanceImportTest, WithoutAWhiteBalanceThereIsNone) {
  EXPECT_EQ(ImportedWhiteBalance({{"Exposure2012", "1"}}).settings, (Settings{{"exposure", 1.0F}}));
}

TEST(WhiteBalanceImportTest, WhatIsNotATemperatureIsIgnored) {
  for (const char* value : {"0", "-5000", "ten", "nan", "1e999", ""}) {
    const SettingsImport import = ImportedWhiteBalance({{"Temperature", value}});
    EXPECT_TRUE(import.settings.empty()) << value;
    EXPECT_EQ(import.properties.at(0).outcome, Outcome::kIgnored);
  }
}

}  // namespace
}  // namespace lumvik::host::test
