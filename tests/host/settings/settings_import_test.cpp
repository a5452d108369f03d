// Import of Camera Raw settings.
#include "settings/settings_import.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "settings/camera_raw_names.h"
#include "settings/settings_file.h"

namespace lumvik::host::test {
namespace {

using Parts = std::vector<std::string>;
using CameraRawProperties = std::vector<std::pair<std::string, Parts>>;

SettingsImport ImportOf(const CameraRawProperties& properties, const StoredFrame& frame = {}) {
  return ImportSettings({"in.xmp", frame, properties, {}});
}

SettingsImport ImportWithOwn(const CameraRawProperties& properties, const CameraRawProperties& own) {
  return ImportSettings({"in.xmp", {}, properties, own});
}

ImportedProperty PropertyOf(const SettingsImport& import, const std::string& name) {
  const auto found = std::find_if(import.properties.begin(), import.properties.end(),
                                  [&](const ImportedProperty& property) { return property.name == name; });
  return found == import.properties.end() ? ImportedProperty() : *found;
}

struct NumberCase {
  const char* name;
  const char* value;
  const char* key;
  float expected;
  Outcome outcome = Outcome::kTaken;
};

void PrintTo(const NumberCase& number, std::ostream* out) {
  *out << number.name << ' ' << number.value;
}

constexpr NumberCase kImportedNumbers[] = {
    {"Exposure2012", "+0.50", "exposure", 0.5F},
    {"Exposure2012", "-1.35", "exposure", -1.35F},
    {"Contrast2012", "-15", "contrast", -15},
    {"Highlights2012", "-60", "highlights", -60},
    {"Shadows2012", "+42", "shadows", 42},
    {"Whites2012", "+20", "whites", -20, Outcome::kScaled},
    {"Blacks2012", "-7", "blacks", 7, Outcome::kScaled},
    {"Blacks2012", "0", "blacks", 0},
    {"IncrementalTemperature", "0", "temperature", 6500, Outcome::kScaled},
    {"IncrementalTemperature", "+50", "temperature", 9629.63F, Outcome::kScaled},
    {"IncrementalTemperature", "-100", "temperature", 3939.394F, Outcome::kScaled},
    {"IncrementalTemperature", "+200", "temperature", 25000, Outcome::kScaled},
    {"IncrementalTint", "-20", "tint", -20},
    {"Saturation", "-5", "saturation", -5},
    {"Vibrance", "+18", "vibrance", 18},
    {"Clarity2012", "+9", "clarity", 9},
    {"Texture", "-8", "texture", -8},
    {"Dehaze", "+10", "dehaze", 10},
    {"Dehaze", "+110", "dehaze", 100, Outcome::kScaled},
    {"Sharpness", "40", "sharpening_amount", 40},
    {"SharpenRadius", "+1.3", "sharpening_radius", 1.3F},
    {"LuminanceSmoothing", "15", "nr_luminance", 15},
    {"ColorNoiseReduction", "25", "nr_color", 25},
    {"LensManualDistortionAmount", "+11", "distortion", 11},
    {"VignetteAmount", "+30", "lens_vignette", 30},
    {"DefringePurpleAmount", "4", "defringe", 20, Outcome::kScaled},
    {"DefringeGreenAmount", "20", "defringe", 100, Outcome::kScaled},
    {"PerspectiveVertical", "-20", "perspective_h", -20},
    {"PostCropVignetteAmount", "+33", "vignette_amount", 33},
    {"PostCropVignetteMidpoint", "45", "vignette_midpoint", 45},
    {"PostCropVignetteRoundness", "-6", "vignette_roundness", -6},
    {"GrainAmount", "22", "grain_amount", 22},
    {"GrainSize", "35", "grain_size", 35},
    {"SplitToningHighlightHue", "45", "split_toning.highlight_hue", 45},
    {"SplitToningHighlightSaturation", "12", "split_toning.highlight_saturation", 12},
    {"SplitToningShadowHue", "220", "split_toning.shadow_hue", 220},
    {"SplitToningShadowSaturation", "13", "split_toning.shadow_saturation", 13},
    {"SplitToningBalance", "-14", "split_toning.balance", -14},
    {"HueAdjustmentRed", "+50", "hsl.red.hue", 15, Outcome::kScaled},
    {"HueAdjustmentMagenta", "-100", "hsl.magenta.hue", -30, Outcome::kScaled},
    {"SaturationAdjustmentOrange", "+17", "hsl.orange.saturation", 17},
    {"LuminanceAdjustmentAqua", "+21", "hsl.aqua.luminance", 21},
};

class HostImportedNumberTest : public ::testing::TestWithParam<NumberCase> {};
INSTANTIATE_TEST_SUITE_P(All, HostImportedNumberTest, ::testing::ValuesIn(kImportedNumbers));

TEST_P(HostImportedNumberTest, IsConvertedWithoutSideEffects) {
  const NumberCase& number = GetParam();
  const SettingsImport import = ImportOf({{number.name, {number.value}}});
  EXPECT_EQ(import.settings, (Settings{{number.key, number.expected}}));
  ASSERT_EQ(import.properties.size(), 1U);
  EXPECT_EQ(import.properties[0].value, number.value);
  EXPECT_EQ(import.properties[0].outcome, number.outcome);
  EXPECT_EQ(import.properties[0].key, number.key);
}

TEST(HostImportTest, EveryNumberHasACase) {
  for (const CameraRawNumber& number : kCameraRawNumbers) {
    EXPECT_TRUE(std::any_of(std::begin(kImportedNumbers), std::end(kImportedNumbers),
                            [&](const NumberCase& known) { return std::string(known.name) == number.name; }))
        << number.name;
  }
}

TEST(HostImportTest, ChangesAreExplained) {
  const SettingsImport import = ImportOf({{"Whites2012", {"+20"}},
                                          {"Dehaze", {"+110"}},
                                          {"HueAdjustmentRed", {"+999"}},
                                          {"Texture", {"ten"}},
                                          {"SharpenDetail", {"25"}}});
  EXPECT_EQ(PropertyOf(import, "Whites2012").note, "times -1");
  EXPECT_EQ(PropertyOf(import, "Dehaze").note, "clamped to 0..100");
  EXPECT_EQ(PropertyOf(import, "HueAdjustmentRed").note, "times 0.3, clamped to -180..180");
  EXPECT_EQ(PropertyOf(import, "Texture").outcome, Outcome::kIgnored);
  EXPECT_EQ(PropertyOf(import, "Texture").note, "it is not a number");
  EXPECT_EQ(PropertyOf(import, "SharpenDetail").outcome, Outcome::kIgnored);
  EXPECT_EQ(PropertyOf(import, "SharpenDetail").note, "no counterpart");
}

TEST(HostImportTest, TheGreaterOfTwoSourcesWins) {
  for (const auto& [first, second] : {std::pair{"2", "3"}, std::pair{"3", "2"}}) {
    const SettingsImport import =
        ImportOf({{"DefringePurpleAmount", {first}}, {"DefringeGreenAmount", {second}}});
    EXPECT_EQ(import.settings, (Settings{{"defringe", 15.0F}}));
  }
}

// Ours only brightens, so that these would do nothing, or the opposite.
TEST(HostImportTest, ValuesWithoutACounterpartAreIgnored) {
  const std::pair<const char*, const char*> lost[] = {
      {"PostCropVignetteAmount", "-33"}, {"PostCropVignetteRoundness", "+6"}, {"Dehaze", "-10"},
      {"VignetteAmount", "-30"},         {"DefringePurpleAmount", "-1"},      {"GrainAmount", "-1"}};
  for (const auto& [name, value] : lost) {
    const SettingsImport import = ImportOf({{name, {value}}});
    EXPECT_TRUE(import.settings.empty()) << name;
    EXPECT_EQ(import.properties.at(0).outcome, Outcome::kIgnored) << name;
    EXPECT_EQ(import.properties.at(0).key, "") << name;
    EXPECT_EQ(import.properties.at(0).note,
              value[0] == '-' ? "no counterpart below 0" : "no counterpart above 0");
  }
}

TEST(HostImportTest, TheShapeOfAnIgnoredVignetteIsIgnored) {
  const SettingsImport import = ImportOf({{"PostCropVignetteAmount", {"-33"}},
                                          {"PostCropVignetteMidpoint", {"40"}},
                                          {"PostCropVignetteRoundness", {"-10"}}});
  EXPECT_TRUE(import.settings.empty()) << SettingsText(import.settings);
  EXPECT_EQ(PropertyOf(import, "PostCropVignetteMidpoint").note, "the vignette is ignored");
  EXPECT_EQ(PropertyOf(import, "PostCropVignetteRoundness").outcome, Outcome::kIgnored);
}

TEST(HostImportTest, GrayscaleIsMinimumSaturation) {
  EXPECT_EQ(ImportOf({{"ConvertToGrayscale", {"True"}}, {"Saturation", {"10"}}}).settings,
            (Settings{{"saturation", -100.0F}}));
  EXPECT_EQ(ImportOf({{"Saturation", {"10"}}, {"ConvertToGrayscale", {"False"}}}).settings,
            (Settings{{"saturation", 10.0F}}));
}

TEST(HostImportTest, CurvesAreNormalized) {
  const SettingsImport import = ImportOf({{"ToneCurvePV2012", {"0, 0", "51, 102", "255, 204"}},
                                          {"ToneCurvePV2012Red", {"0,51", "255,255"}},
                                          {"ToneCurvePV2012Blue", {"0, 0", "255, 255"}}});
  EXPECT_EQ(import.settings, (Settings{{"tone_curves.master", ToneCurve{{0, 0}, {0.2F, 0.4F}, {1, 0.8F}}},
                                       {"tone_curves.red", ToneCurve{{0, 0.2F}, {1, 1}}},
                                       {"tone_curves.blue", ToneCurve()}}));
  EXPECT_EQ(PropertyOf(import, "ToneCurvePV2012").value, "0, 0; 51, 102; 255, 204");
}

TEST(HostImportTest, InvalidCurvesAreIgnored) {
  const std::vector<Parts> invalid = {{},
                                      {""},
                                      {"0, 0"},
                                      {"0, 0", "0, 9"},
                                      {"0, 0", "300, 9"},
                                      {"0, 0", "x, 9"},
                                      {"0, 0", "9"},
                                      {"0, 0", "9, "},
                                      {"0, 0", "nan, 9"},
                                      Parts(kMaxCurvePoints + 1, "0, 0")};
  for (const Parts& points : invalid) {
    const SettingsImport import = ImportOf({{"ToneCurvePV2012", points}});
    EXPECT_TRUE(import.settings.empty());
    EXPECT_EQ(import.properties.at(0).outcome, Outcome::kIgnored);
    EXPECT_NE(import.properties.at(0).note, "");
  }
  EXPECT_EQ(ImportOf({{"ToneCurvePV2012Name", {"0, 0", "255, 255"}}}).properties.at(0).note,
            "no counterpart");
}

CameraRawProperties CropProperties(const Parts& corners, const std::string& angle) {
  return {{"HasCrop", {"True"}},       {"CropLeft", {corners.at(0)}},   {"CropTop", {corners.at(1)}},
          {"CropRight", {corners[2]}}, {"CropBottom", {corners.at(3)}}, {"CropAngle", {angle}}};
}

std::vector<float> CropOf(const SettingsImport& import) {
  std::vector<float> crop;
  for (const char* key : {"crop.x", "crop.y", "crop.w", "crop.h", "rotation"}) {
    const auto value = import.settings.find(key);
    if (value != import.settings.end()) crop.push_back(std::get<float>(value->second));
  }
  return crop;
}

auto IsNear(std::vector<float> expected) {
  return ::testing::Pointwise(::testing::FloatNear(1e-5F), std::move(expected));
}

TEST(HostImportTest, CropsAreTurnedWithTheImage) {
  const CameraRawProperties crop = CropProperties({"0.1", "0.2", "0.5", "0.9"}, "0");
  EXPECT_THAT(CropOf(ImportOf(crop)), IsNear({0.1F, 0.2F, 0.4F, 0.7F, 0}));
  EXPECT_EQ(PropertyOf(ImportOf(crop), "CropLeft").outcome, Outcome::kTaken);
  // Orientation 6: turned right, so that the left edge becomes the top.
  const SettingsImport turned = ImportOf(crop, {60, 40, 6});
  EXPECT_THAT(CropOf(turned), IsNear({0.1F, 0.1F, 0.7F, 0.4F, 0}));
  EXPECT_EQ(PropertyOf(turned, "CropLeft").note, "rotated with the image");
}

// Values from a program that rotated the crop 0.25, 0.25, 0.75, 0.75 of a 1506x1000 image about its center.
TEST(HostImportTest, ARotatedCropKeepsItsSize) {
  const CameraRawProperties crop = CropProperties({"0.374965", "0.36916", "0.925035", "0.73084"}, "-10");
  const std::vector<float> turned = CropOf(ImportOf(crop, {1506, 1000, 1}));
  ASSERT_EQ(turned.size(), 5U);
  EXPECT_NEAR(turned[2], 0.5, 0.001);
  EXPECT_NEAR(turned[3], 0.5, 0.001);
  EXPECT_EQ(turned[4], -10);
  EXPECT_EQ(PropertyOf(ImportOf(crop), "CropLeft").note, "rotated with the image, assuming a 3:2 image");
}

TEST(HostImportTest, ImpossibleCropsAreIgnored) {
  const std::vector<CameraRawProperties> impossible = {CropProperties({"1.1", "0.1", "1.9", "0.9"}, "0"),
                                                       CropProperties({"3", "0.5", "3", "0.5"}, "30"),
                                                       CropProperties({"1e308", "0", "1e308", "1"}, "30"),
                                                       CropProperties({"0.1", "0.2", "0.9", "0.8"}, "1000"),
                                                       CropProperties({"0.1", "0.2", "0.9", "0.8"}, "ten"),
                                                       CropProperties({"nan", "0.2", "0.9", "0.8"}, "0")};
  for (const CameraRawProperties& crop : impossible) {
    const SettingsImport import = ImportOf(crop);
    EXPECT_TRUE(import.settings.empty()) << SettingsText(import.settings);
    EXPECT_EQ(PropertyOf(import, "CropLeft").outcome, Outcome::kIgnored);
  }
}

TEST(HostImportTest, AnyValueIsWithinItsRange) {
  std::vector<std::string> values = {"NaN", "-nan", "inf", "-inf", "1e999", "", "ten", "+", "+-1"};
  for (const char* number : {"0", "1e-320", "0.009", "1.000001", "10.001", "20.001", "100.001", "150.001",
                             "180.001", "360.001", "1000", "1666.9", "25000.1", "1e30", "1e308"}) {
    values.insert(values.end(), {number, std::string("-") + number});
  }
  for (const std::string& value : values) {
    CameraRawProperties properties = CropProperties({value, value, value, value}, value);
    for (const CameraRawNumber& number : kCameraRawNumbers) properties.push_back({number.name, {value}});
    for (const CameraRawBandNumber& number : kCameraRawBandNumbers) {
      for (const std::string band : kBandNames) {
        properties.push_back({number.name + Capitalized(band), {value}});
      }
    }
    properties.push_back({"ToneCurvePV2012", {"0, " + value, "255, 255"}});
    properties.push_back({"ToneCurvePV2012Red", {"0, 0", value + ", 9"}});
    const Settings settings = ImportOf(properties).settings;
    EXPECT_EQ(ParseSettings(SettingsText(settings)), settings) << value;
  }
}

TEST(HostImportTest, OurOwnValuesWin) {
  const CameraRawProperties properties = {{"Exposure2012", {"1"}}, {"Contrast2012", {"20"}}};
  const SettingsImport import =
      ImportWithOwn(properties, {{"Settings", {R"({"lumvik": 2, "contrast": 30.5, "flip_h": true})"}}});
  EXPECT_EQ(import.settings, (Settings{{"exposure", 1.0F}, {"contrast", 30.5F}, {"flip_h", true}}));
  EXPECT_EQ(PropertyOf(import, "lumvik:Settings").outcome, Outcome::kTaken);
}

TEST(HostImportTest, DamagedOwnValuesAreIgnored) {
  const SettingsImport import = ImportWithOwn(
      {{"Exposure2012", {"1"}}}, {{"Settings", {R"({"lumvik": 2, "contrast": 300})"}}, {"Newer", {"1"}}});
  EXPECT_EQ(import.settings, (Settings{{"exposure", 1.0F}}));
  EXPECT_EQ(PropertyOf(import, "lumvik:Settings").outcome, Outcome::kIgnored);
  EXPECT_EQ(PropertyOf(import, "lumvik:Settings").note, "line 1: contrast: 300 is not a number in -100..100");
  EXPECT_EQ(PropertyOf(import, "lumvik:Newer").note, "no counterpart");
}

TEST(HostImportTest, TheReportListsEveryProperty) {
  const SettingsImport import = ImportOf({{"Whites2012", {"+20"}}, {"Sharpen\xFF", {"a\nb"}}});
  const auto report = nlohmann::json::parse(ImportReport("in.xmp", import.properties));
  EXPECT_EQ(report.at("file"), "in.xmp");
  EXPECT_EQ(report.at("properties"), nlohmann::json::parse(R"([
    {"name": "Whites2012", "value": "+20", "outcome": "scaled", "key": "whites", "note": "times -1"},
    {"name": "Sharpen\uFFFD", "value": "a\nb", "outcome": "ignored", "key": "", "note": "no counterpart"}])"));
}

}  // namespace
}  // namespace lumvik::host::test
