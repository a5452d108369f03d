// Whatever a settings object can hold is read back, in every form in which it is written.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "lumvik_host.h"
#include "metadata/metadata_fixture.h"
#include "settings/setting_table.h"
#include "settings/settings_object.h"

namespace lumvik::host::test {
namespace {

constexpr std::uintmax_t kMaxSettingsFile = 256 << 10;

class SettingsExtremesTest : public MetadataFixture {
 protected:
  static void SetCurve(const SettingsObject& settings, const std::string& key,
                       const std::vector<float>& points) {
    ASSERT_EQ(
        lumvik_host_settings_set_curve(settings.Handle(), key.c_str(), points.data(), points.size() / 2),
        LUMVIK_HOST_OK)
        << key << ": " << lumvik_host_last_error();
  }

  // Sets all curves to the most points. Each input is the next float, so that none may lose a digit.
  static void SetLongestCurves(const SettingsObject& settings, float first_input, float output) {
    for (const char* name : kCurveNames) {
      std::vector<float> points;
      float input = first_input;
      for (std::size_t i = 0; i < kMaxCurvePoints; ++i) {
        points.insert(points.end(), {input, output});
        input = std::nextafter(input, 2.0F);
      }
      SetCurve(settings, std::string("tone_curves.") + name, points);
    }
  }

  // As JSON, a file, a preset and XMP.
  void ExpectReadBack(const SettingsObject& settings) const {
    EXPECT_TRUE(SettingsObject::From(settings.Text()).Equals(settings));

    const std::string file = Path("settings.json");
    ASSERT_EQ(lumvik_host_settings_write(settings.Handle(), file.c_str(), 1), LUMVIK_HOST_OK);
    EXPECT_LE(std::filesystem::file_size(file), kMaxSettingsFile);
    EXPECT_TRUE(Opened(lumvik_host_settings_read, file).Equals(settings));

    const std::string folder = Path("presets");
    ASSERT_EQ(lumvik_host_write_preset(folder.c_str(), "extreme", settings.Handle(), 1), LUMVIK_HOST_OK);
    lumvik_host_settings* preset = nullptr;
    ASSERT_EQ(lumvik_host_read_preset(folder.c_str(), "extreme", &preset), LUMVIK_HOST_OK);
    EXPECT_TRUE(SettingsObject(preset).Equals(settings));

    char* packet = nullptr;
    ASSERT_EQ(lumvik_host_settings_to_xmp(settings.Handle(), &packet), LUMVIK_HOST_OK);
    const std::string xmp = Path("settings.xmp");
    std::ofstream(xmp, std::ios::binary) << Released(packet);
    const SettingsObject imported = Opened(
        [](const char* path, lumvik_host_settings** opened) {
          return lumvik_host_settings_import_xmp(path, opened, nullptr);
        },
        xmp);
    EXPECT_TRUE(imported.Equals(settings));
    EXPECT_TRUE(SettingsObject::From(imported.Text()).Equals(settings));
  }

 private:
  template <typename Open>
  static SettingsObject Opened(const Open& open, const std::string& path) {
    lumvik_host_settings* settings = nullptr;
    EXPECT_EQ(open(path.c_str(), &settings), LUMVIK_HOST_OK) << lumvik_host_last_error();
    return SettingsObject(settings);
  }
};

TEST_F(SettingsExtremesTest, TheEndsOfEveryRange) {
  for (const bool is_highest : {false, true}) {
    const SettingsObject settings;
    for (const SettingRule& rule : SettingRules()) {
      if (rule.Kind() == LUMVIK_HOST_FLAG) {
        EXPECT_EQ(lumvik_host_settings_set_flag(settings.Handle(), rule.key.c_str(), is_highest ? 1 : 0),
                  LUMVIK_HOST_OK);
      } else if (rule.Kind() != LUMVIK_HOST_CURVE) {
        settings.Set(rule.key, is_highest ? rule.range.highest : rule.range.lowest);
      }
    }
    ExpectReadBack(settings);
  }
}

TEST_F(SettingsExtremesTest, TheSmallestNumbersInEveryRange) {
  for (const float number : {std::numeric_limits<float>::denorm_min(), -0.0F, 1.17549435e-38F, 1e-7F}) {
    const SettingsObject settings;
    for (const SettingRule& rule : SettingRules()) {
      const bool is_number = rule.Kind() != LUMVIK_HOST_FLAG && rule.Kind() != LUMVIK_HOST_CURVE;
      if (is_number && rule.range.Holds(number)) settings.Set(rule.key, number);
    }
    ExpectReadBack(settings);
  }
}

TEST_F(SettingsExtremesTest, TheLongestCurves) {
  constexpr float kSmall = 1.17549435e-38F;
  for (const float first_input : {0.0F, kSmall, 1e-5F, 0.1234567F}) {
    for (const float output : {std::numeric_limits<float>::denorm_min(), kSmall, 1.2345678e-5F, 1.0F}) {
      const SettingsObject settings;
      SetLongestCurves(settings, first_input, output);
      ExpectReadBack(settings);
    }
  }
}

// With all other settings too, in as many digits as a float has.
TEST_F(SettingsExtremesTest, EverythingAtOnce) {
  const SettingsObject settings;
  for (const SettingRule& rule : SettingRules()) {
    if (rule.Kind() == LUMVIK_HOST_FLAG || rule.Kind() == LUMVIK_HOST_CURVE) continue;
    settings.Set(rule.key, std::nextafter(rule.range.highest, rule.range.lowest));
  }
  SetLongestCurves(settings, 1.17549435e-38F, 1.17549449e-38F);
  ExpectReadBack(settings);
}

}  // namespace
}  // namespace lumvik::host::test
