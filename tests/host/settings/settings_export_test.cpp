// Export of settings as XMP, and reading it back.
#include "settings/settings_export.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <random>
#include <string>

#include "lumvik_host.h"
#include "metadata/metadata_fixture.h"
#include "settings/settings_file.h"
#include "settings/settings_import.h"
#include "settings/settings_object.h"

namespace lumvik::host::test {
namespace {

using ::testing::HasSubstr;

std::string ExportedValue(const Settings& settings, const std::string& name) {
  for (const auto& [known, parts] : ExportSettings(settings).properties) {
    if (known == name) return parts.size() == 1 ? parts[0] : std::to_string(parts.size()) + " parts";
  }
  return "(none)";
}

Settings OwnValues(const Settings& settings) {
  return ParseSettings(ExportSettings(settings).own_properties.at(0).second.at(0));
}

TEST(SettingsExportTest, ValuesWithAnExactInverseAreCameraRawSettings) {
  const Settings settings = {{"exposure", 0.1F},
                             {"whites", -20.5F},
                             {"defringe", 35.0F},
                             {"hsl.red.hue", 15.0F},
                             {"hsl.magenta.luminance", -7.7F},
                             {"tone_curves.red", ToneCurve{{0, 0.2F}, {1, 1}}}};
  EXPECT_EQ(ExportedValue(settings, "Exposure2012"), "0.1");
  EXPECT_EQ(ExportedValue(settings, "Whites2012"), "20.5");
  EXPECT_EQ(ExportedValue(settings, "DefringePurpleAmount"), "7");
  EXPECT_EQ(ExportedValue(settings, "DefringeGreenAmount"), "7");
  EXPECT_EQ(ExportedValue(settings, "HueAdjustmentRed"), "50");
  EXPECT_EQ(ExportedValue(settings, "LuminanceAdjustmentMagenta"), "-7.7");
  EXPECT_EQ(ExportedValue(settings, "ToneCurvePV2012Red"), "2 parts");
  EXPECT_TRUE(OwnValues(settings).empty()) << SettingsText(OwnValues(settings));
}

TEST(SettingsExportTest, OtherValuesAreOurOwn) {
  const Settings settings = {{"brightness", 10.0F},
                             {"flip_h", true},
                             {"crop.w", 0.5F},
                             {"crop.h", 0.5F},
                             {"rotation", 2.0F},
                             {"vignette_amount", -20.0F},
                             {"vignette_roundness", 30.0F},
                             {"sharpening_radius", 2.0F},
                             {"tone_curves.red", ToneCurve{{0, 0}, {1, 1}}}};
  Settings expected = settings;
  expected.erase("sharpening_radius");
  EXPECT_EQ(OwnValues(settings), expected);
  EXPECT_EQ(ExportedValue(settings, "PostCropVignetteAmount"), "(none)");
  EXPECT_EQ(ExportedValue(settings, "PostCropVignetteRoundness"), "(none)");
  EXPECT_EQ(ExportedValue(settings, "ToneCurvePV2012Red"), "(none)");
}

TEST(SettingsExportTest, ANeutralWhiteBalanceIsAsShot) {
  const Settings both = {{"temperature", 6500.0F}, {"tint", 0.0F}};
  EXPECT_EQ(ExportedValue(both, "WhiteBalance"), "As Shot");
  EXPECT_EQ(ExportedValue(both, "Temperature"), "(none)");
  EXPECT_TRUE(OwnValues(both).empty());
  const Settings one = {{"temperature", 6500.0F}};
  EXPECT_EQ(ExportedValue(one, "WhiteBalance"), "(none)");
  EXPECT_EQ(ExportedValue(one, "Temperature"), "(none)");
  EXPECT_EQ(OwnValues(one), one);
  EXPECT_EQ(ExportedValue({}, "WhiteBalance"), "(none)");
}

// Another program would take our temperature for that of the light.
TEST(SettingsExportTest, AnotherWhiteBalanceIsOurOwn) {
  const Settings settings = {{"temperature", 5000.0F}, {"tint", -7.5F}};
  EXPECT_EQ(OwnValues(settings), settings);
  for (const char* name :
       {"WhiteBalance", "Temperature", "Tint", "IncrementalTemperature", "IncrementalTint"}) {
    EXPECT_EQ(ExportedValue(settings, name), "(none)");
  }
  CameraRawSettings exported = ExportSettings(settings);
  exported.as_shot = {5200, 3};
  EXPECT_EQ(ImportSettings(exported).settings, settings);
}

TEST(SettingsExportTest, ALinearCurveIsTwoPoints) {
  EXPECT_EQ(ExportedValue({{"tone_curves.master", ToneCurve()}}, "ToneCurvePV2012"), "2 parts");
  EXPECT_TRUE(OwnValues({{"tone_curves.master", ToneCurve()}}).empty());
}

TEST(SettingsExportTest, RandomValuesAreImportedExactly) {
  std::mt19937 random(3);
  int own = 0;
  for (int i = 0; i < 200; ++i) {
    const Settings settings = RandomSettings(random, i / 200.0);
    EXPECT_EQ(ImportSettings(ExportSettings(settings)).settings, settings) << SettingsText(settings);
    own += static_cast<int>(OwnValues(settings).count("hsl.red.hue"));
  }
  // A hue divided by 0.3 is exact as a double.
  EXPECT_EQ(own, 0);
}

TEST(SettingsExportTest, TextIsEscaped) {
  const CameraRawSettings settings = {
      "", {}, {{"Look", {"a & b"}}, {"List", {"<1>", "2"}}}, {{"Settings", {"]]>\"'"}}}};
  const std::string packet = XmpPacket(settings);
  EXPECT_THAT(packet, HasSubstr("<crs:Look>a &amp; b</crs:Look>"));
  EXPECT_THAT(packet, HasSubstr("<crs:List><rdf:Seq><rdf:li>&lt;1&gt;</rdf:li><rdf:li>2</rdf:li></rdf:Seq>"));
  EXPECT_THAT(packet, HasSubstr("<lumvik:Settings>]]&gt;\"'</lumvik:Settings>"));
}

// Through the interface, with an XMP parser in between.
class XmpFileTest : public MetadataFixture {
 protected:
  std::string Written(const std::string& name, const Settings& settings) const {
    const SettingsObject object = SettingsObject::From(SettingsText(settings));
    char* packet = nullptr;
    EXPECT_EQ(lumvik_host_settings_to_xmp(object.Handle(), &packet), LUMVIK_HOST_OK);
    std::ofstream(Path(name), std::ios::binary) << Released(packet);
    return Path(name);
  }

  Settings Imported(const std::string& path) {
    lumvik_host_settings* handle = nullptr;
    char* report = nullptr;
    EXPECT_EQ(lumvik_host_settings_import_xmp(path.c_str(), &handle, &report), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    report_ = nlohmann::json::parse(Released(report));
    return ParseSettings(SettingsObject(handle).Text());
  }

  nlohmann::json report_;
};

TEST_F(XmpFileTest, APacketIsReadBackExactly) {
  std::mt19937 random(4);
  for (int i = 0; i <= 20; ++i) {
    const Settings settings = RandomSettings(random, i / 20.0);
    EXPECT_EQ(Imported(Written("out.xmp", settings)), settings);
  }
}

TEST_F(XmpFileTest, TheSidecarOfAPhotographIsImported) {
  const std::string photograph = PlainImage("in.jpg");
  Written("in.xmp", {{"exposure", 0.5F}, {"brightness", 3.0F}});
  EXPECT_EQ(Imported(photograph), (Settings{{"exposure", 0.5F}, {"brightness", 3.0F}}));
  EXPECT_EQ(report_.at("file"), Path("in.xmp"));
  std::string names;
  for (const auto& property : report_.at("properties")) {
    names += property.at("name").get<std::string>() + ' ';
  }
  EXPECT_THAT(names, HasSubstr("Exposure2012 "));
  EXPECT_THAT(names, HasSubstr("lumvik:Settings "));
}

TEST_F(XmpFileTest, TheReportIsOptional) {
  lumvik_host_settings* handle = nullptr;
  ASSERT_EQ(lumvik_host_settings_import_xmp(Written("out.xmp", {{"tint", 3.0F}}).c_str(), &handle, nullptr),
            LUMVIK_HOST_OK);
  EXPECT_EQ(SettingsObject(handle).Number("tint"), 3);
}

TEST_F(XmpFileTest, FilesWithoutSettingsAreRefused) {
  lumvik_host_settings* handle = nullptr;
  char* report = nullptr;
  ExpectFailure(lumvik_host_settings_import_xmp(Path("none.xmp").c_str(), &handle, &report),
                LUMVIK_HOST_NOT_FOUND, "there is no such file");
  ExpectFailure(lumvik_host_settings_import_xmp(PlainImage("in.jpg").c_str(), &handle, &report),
                LUMVIK_HOST_NOT_FOUND, "it has no Camera Raw or Lightroom settings");
  EXPECT_EQ(handle, nullptr);
  EXPECT_EQ(report, nullptr);
}

}  // namespace
}  // namespace lumvik::host::test
