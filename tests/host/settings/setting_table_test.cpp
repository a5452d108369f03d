// Descriptions of settings.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "lumvik_host.h"
#include "settings/settings_object.h"

namespace lumvik::host::test {
namespace {

using ::testing::AnyOf;
using ::testing::StrEq;

std::vector<lumvik_host_setting_info> DescribeAllSettings() {
  std::vector<lumvik_host_setting_info> infos(lumvik_host_setting_count());
  for (std::size_t i = 0; i < infos.size(); ++i) {
    infos[i].struct_size = sizeof(infos[i]);
    EXPECT_EQ(lumvik_host_describe_setting(i, &infos[i]), LUMVIK_HOST_OK);
  }
  return infos;
}

lumvik_host_setting_info DescribeKey(const char* key) {
  std::size_t index = 0;
  EXPECT_EQ(lumvik_host_find_setting(key, &index), LUMVIK_HOST_OK) << key;
  return DescribeAllSettings().at(index);
}

TEST(SettingTableTest, CountsEverySettingOfTheEngine) {
  std::map<int, int> counts;
  for (const auto& info : DescribeAllSettings()) ++counts[info.kind];
  EXPECT_EQ(counts, (std::map<int, int>{{LUMVIK_HOST_NUMBER, 31 + 4 + 1},
                                        {LUMVIK_HOST_FLAG, 2},
                                        {LUMVIK_HOST_CURVE, 4},
                                        {LUMVIK_HOST_BAND, 8 * 3},
                                        {LUMVIK_HOST_ZONE, 2 * 2}}));
}

TEST(SettingTableTest, DescriptionsAreComplete) {
  std::set<std::string> keys;
  std::set<std::string> labels;
  for (const auto& info : DescribeAllSettings()) {
    EXPECT_TRUE(keys.insert(info.key).second) << info.key;
    EXPECT_TRUE(labels.insert(info.label).second) << info.label;
    EXPECT_STRNE(info.label, "") << info.key;
    EXPECT_STRNE(info.help, "") << info.key;
    EXPECT_THAT(info.group, AnyOf(StrEq("Tone"), StrEq("Color"), StrEq("Detail"), StrEq("Lens"),
                                  StrEq("Geometry"), StrEq("Effects")))
        << info.key;
    EXPECT_THAT(info.unit, AnyOf(StrEq("stops"), StrEq("kelvin"), StrEq("percent"), StrEq("degrees"),
                                 StrEq("pixels"), StrEq("fraction"), StrEq("")))
        << info.key;
    EXPECT_EQ(info.minimum < info.maximum, info.kind != LUMVIK_HOST_CURVE) << info.key;
    EXPECT_LE(info.minimum, info.neutral_value) << info.key;
    EXPECT_GE(info.maximum, info.neutral_value) << info.key;
    EXPECT_EQ(info.struct_size, sizeof(info));
  }
}

TEST(SettingTableTest, SettingsOfOneGroupFollowOneAnother) {
  std::vector<std::string> groups;
  for (const auto& info : DescribeAllSettings()) {
    if (groups.empty() || groups.back() != info.group) groups.emplace_back(info.group);
  }
  EXPECT_THAT(groups, ::testing::ElementsAre("Tone", "Color", "Detail", "Lens", "Geometry", "Effects"));
}

TEST(SettingTableTest, DescribesABand) {
  const lumvik_host_setting_info info = DescribeKey("hsl.red.hue");
  EXPECT_EQ(info.kind, LUMVIK_HOST_BAND);
  EXPECT_STREQ(info.label, "Red hue");
  EXPECT_STREQ(info.group, "Color");
  EXPECT_STREQ(info.unit, "degrees");
  EXPECT_EQ(info.minimum, -180);
  EXPECT_EQ(info.maximum, 180);
}

TEST(SettingTableTest, DescribesAFlagAndACurve) {
  EXPECT_EQ(DescribeKey("flip_h").kind, LUMVIK_HOST_FLAG);
  EXPECT_EQ(DescribeKey("flip_h").maximum, 1);
  EXPECT_EQ(DescribeKey("tone_curves.blue").kind, LUMVIK_HOST_CURVE);
  EXPECT_EQ(DescribeKey("tone_curves.blue").maximum, 0);
}

TEST(SettingTableTest, OnlyTheTemperatureOfTheEngineIsNotNeutral) {
  for (const auto& info : DescribeAllSettings()) {
    const bool is_temperature = std::string(info.key) == "temperature";
    EXPECT_EQ(info.neutral_value != info.engine_value, is_temperature) << info.key;
  }
  EXPECT_EQ(DescribeKey("temperature").neutral_value, 6500);
  EXPECT_EQ(DescribeKey("temperature").engine_value, 5500);
  EXPECT_EQ(DescribeKey("sharpening_radius").neutral_value, 1);
  EXPECT_EQ(DescribeKey("vignette_midpoint").neutral_value, 50);
  EXPECT_EQ(DescribeKey("grain_size").neutral_value, 25);
  EXPECT_EQ(DescribeKey("exposure").neutral_value, 0);
}

TEST(SettingTableTest, FindsEverySetting) {
  const std::vector<lumvik_host_setting_info> infos = DescribeAllSettings();
  for (std::size_t i = 0; i < infos.size(); ++i) {
    std::size_t index = infos.size();
    EXPECT_EQ(lumvik_host_find_setting(infos[i].key, &index), LUMVIK_HOST_OK);
    EXPECT_EQ(index, i) << infos[i].key;
  }
}

TEST(SettingTableTest, UnknownSettingsAreRefused) {
  std::size_t index = 77;
  for (const char* key : {"", "sepia", "hsl", "hsl.red", "Exposure", "exposure ", "hsl.red.hue.x"}) {
    ExpectFailure(lumvik_host_find_setting(key, &index), LUMVIK_HOST_INVALID_ARGUMENT,
                  std::string(key) + ": there is no such setting");
  }
  EXPECT_EQ(index, 77U);
  lumvik_host_setting_info info{};
  info.struct_size = sizeof(info);
  ExpectFailure(lumvik_host_describe_setting(lumvik_host_setting_count(), &info),
                LUMVIK_HOST_INVALID_ARGUMENT, "there is no setting");
  EXPECT_EQ(info.key, nullptr);
}

TEST(SettingTableTest, JsonHasTheSameDescriptions) {
  char* text = nullptr;
  ASSERT_EQ(lumvik_host_describe_settings_json(&text), LUMVIK_HOST_OK);
  const auto json = nlohmann::json::parse(Released(text));
  const char* const kinds[] = {"number", "flag", "curve", "band", "zone"};
  const std::vector<lumvik_host_setting_info> infos = DescribeAllSettings();
  ASSERT_EQ(json.size(), infos.size());
  for (std::size_t i = 0; i < infos.size(); ++i) {
    const auto& info = infos[i];
    EXPECT_EQ(json[i].size(), 10U);
    EXPECT_EQ(json[i].at("key"), info.key);
    EXPECT_EQ(json[i].at("kind"), kinds[info.kind]);
    EXPECT_EQ(json[i].at("label"), info.label);
    EXPECT_EQ(json[i].at("group"), info.group);
    EXPECT_EQ(json[i].at("unit"), info.unit);
    EXPECT_EQ(json[i].at("help"), info.help);
    EXPECT_EQ(json[i].at("minimum").get<float>(), info.minimum);
    EXPECT_EQ(json[i].at("maximum").get<float>(), info.maximum);
    EXPECT_EQ(json[i].at("neutral_value").get<float>(), info.neutral_value);
    EXPECT_EQ(json[i].at("engine_value").get<float>(), info.engine_value);
  }
}

}  // namespace
}  // namespace lumvik::host::test
