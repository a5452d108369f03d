// Settings as JSON: exact, in two versions, and with errors that name line and key.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <string>

#include "lumvik_host.h"
#include "settings/settings_file.h"
#include "settings/settings_object.h"

namespace lumvik::host::test {
namespace {

lumvik_host_status ReadJson(const std::string& json) {
  lumvik_host_settings* settings = nullptr;
  const lumvik_host_status status = lumvik_host_settings_from_json(json.data(), json.size(), &settings);
  EXPECT_EQ(settings == nullptr, status != LUMVIK_HOST_OK);
  lumvik_host_settings_close(settings);
  return status;
}

TEST(SettingsJsonTest, NoValuesGiveTheVersionAlone) {
  EXPECT_EQ(SettingsObject().Text(), "{\n  \"lumvik\": 2\n}\n");
}

TEST(SettingsJsonTest, ValuesAreNestedByKeyInTheOrderOfTheTable) {
  const SettingsObject settings = SettingsObject::From(
      R"({"flip_h": true, "hsl": {"blue": {"hue": -7.7}}, "crop": {"w": 0.5}, "lumvik": 2, "exposure": 0.1,)"
      R"( "tone_curves": {"red": [[0, 0.2], [1, 1]], "blue": []}})");
  EXPECT_EQ(settings.Text(), R"({
  "lumvik": 2,
  "exposure": 0.1,
  "tone_curves": {
    "red": [
      [0.0, 0.2],
      [1.0, 1.0]
    ],
    "blue": []
  },
  "hsl": {
    "blue": {
      "hue": -7.7
    }
  },
  "crop": {
    "w": 0.5
  },
  "flip_h": true
}
)");
}

TEST(SettingsJsonTest, EngineValuesAreAllWritten) {
  const SettingsObject settings;
  ASSERT_EQ(lumvik_host_settings_set_engine_values(settings.Handle()), LUMVIK_HOST_OK);
  const auto json = nlohmann::json::parse(settings.Text());
  EXPECT_EQ(json.at("temperature"), 5500);
  EXPECT_EQ(json.at("tone_curves").at("master"), nlohmann::json::array());
  // The version, and one value for each setting; an empty list has no value in a flat object but its own.
  EXPECT_EQ(json.flatten().size(), 1 + lumvik_host_setting_count());
}

TEST(SettingsJsonTest, RandomValuesAreReadBackExactly) {
  std::mt19937 random(1);
  for (int i = 0; i < 200; ++i) {
    const Settings settings = RandomSettings(random, i / 200.0);
    const std::string text = SettingsText(settings);
    EXPECT_EQ(ParseSettings(text), settings) << text;
    EXPECT_EQ(SettingsText(ParseSettings(text)), text);
  }
}

TEST(SettingsJsonTest, TheLongestCurvesAreReadBackExactly) {
  std::mt19937 random(2);
  std::uniform_real_distribution<float> level(0, 1);
  Settings settings;
  for (const char* name : kCurveNames) {
    ToneCurve curve;
    for (std::size_t i = 0; i < kMaxCurvePoints; ++i) {
      curve.push_back({(static_cast<float>(i) + level(random) / 2) / kMaxCurvePoints, level(random)});
    }
    settings[std::string("tone_curves.") + name] = curve;
  }
  EXPECT_EQ(ParseSettings(SettingsText(settings)), settings);
}

TEST(SettingsJsonTest, WithoutATemperatureTheFirstVersionHasThatOfTheEngine) {
  EXPECT_EQ(SettingsObject::From(R"({"lumvik": 1})").Number("temperature"), 5500);
  EXPECT_TRUE(SettingsObject::From(R"({"lumvik": 1})").Has("temperature"));
  EXPECT_EQ(SettingsObject::From(R"({"lumvik": 1, "temperature": 7000})").Number("temperature"), 7000);
  EXPECT_EQ(SettingsObject::From(R"({"lumvik": 2})").Number("temperature"), 6500);
  EXPECT_FALSE(SettingsObject::From(R"({"lumvik": 2})").Has("temperature"));
}

struct JsonFaultCase {
  const char* json;
  const char* text;
};

constexpr JsonFaultCase kJsonFaults[] = {
    {"", "line 1: syntax error while parsing value - unexpected end of input"},
    {"   \n\n  ", "line 3: syntax error while parsing value - unexpected end of input"},
    {"[]", "line 1: a settings file must be an object: {...}"},
    {"3", "line 1: a settings file must be an object: {...}"},
    {"null", "line 1: a settings file must be an object: {...}"},
    {"{}", "line 1: lumvik: missing; it must be 2"},
    {"{\n\"lumvik\": 3, \"sepia\": 1}", "line 2: lumvik: 3 is not a supported version, 1 or 2"},
    {"{\"lumvik\": 0}", "line 1: lumvik: 0 is not a supported version"},
    {"{\"lumvik\": -1}", "line 1: lumvik: -1 is not a supported version"},
    {"{\"lumvik\": 4294967298}", "line 1: lumvik: 4294967298 is not a supported version"},
    {"{\"lumvik\": 2.0}", "line 1: lumvik: 2.0 is not a supported version"},
    {"{\"lumvik\": \"2\"}", "line 1: lumvik: \"2\" is not a supported version"},
    {"{\"lumvik\": true}", "line 1: lumvik: true is not a supported version"},
    {"{\"lumvik\": 2,\n\"sepia\": 1\n}", "line 2: sepia: there is no such setting"},
    {"{\"lumvik\": 2, \"\": 1}", "line 1: there is no such setting"},
    {"{\"lumvik\": 2, \"a\\nb\": 1}", "line 1: a\\nb: there is no such setting"},
    {"{\"lumvik\": 2,\n\"hsl\": {\n\"rod\": {}}}", "line 3: hsl.rod: there is no such setting"},
    {"{\"lumvik\": 2, \"hsl\": {\"lumvik\": 2}}", "line 1: hsl.lumvik: there is no such setting"},
    {"{\"lumvik\": 2, \"hsl.red.hue\": 1}", "line 1: hsl.red.hue: there is no such setting"},
    {"{\"lumvik\": 2,\n\"hsl\": 3}", "line 2: hsl: 3 is not an object"},
    {"{\"lumvik\": 2,\n\"hsl\": {\"red\":\n {\"hue\": 200\n}}}",
     "line 3: hsl.red.hue: 200 is not a number in -180..180"},
    {"{\"lumvik\": 2,\n\"exposure\": \"1\"}", "line 2: exposure: \"1\" is not a number in -10..10"},
    {"{\"lumvik\": 2,\n\"exposure\": true}", "line 2: exposure: true is not a number in -10..10"},
    {"{\"lumvik\": 2,\n\"exposure\": null}", "line 2: exposure: null is not a number in -10..10"},
    {"{\"lumvik\": 2,\n\"exposure\": [1]}", "line 2: exposure: a list is not a number in -10..10"},
    {"{\"lumvik\": 2,\n\"exposure\": {}}", "line 2: exposure: an object is not a number in -10..10"},
    {"{\"lumvik\": 2,\n\"sharpening_radius\": 0}",
     "line 2: sharpening_radius: 0 is not a number in 0.01..100"},
    {"{\"lumvik\": 2,\n\"exposure\": 1e999\n}", "line 2: exposure: the number is too large"},
    {"{\"lumvik\": 2,\n\"exposure\": NaN\n}", "line 2: after exposure: syntax error"},
    {"{\"lumvik\": 2,\n\"exposure\": Infinity\n}", "line 2: after exposure: syntax error"},
    {"{\"lumvik\": 2,\n\"flip_h\": 1}", "line 2: flip_h: 1 is not true or false"},
    {"{\"lumvik\": 2,\n\"tint\": 1,\n\"tint\": 1}", "line 3: tint: duplicate key"},
    {"{\"lumvik\": 2,\n\"lumvik\": 2}", "line 2: lumvik: duplicate key"},
    {"{\"lumvik\": 2,\n\"crop\": {\"x\": 0,\n\"x\": 0}}", "line 3: crop.x: duplicate key"},
    {"{\"lumvik\": 2,\n\"tint\": 1\n\"exposure\": 1}",
     "line 3: after tint: syntax error while parsing object"},
    {"{\"lumvik\": 2,\n\"tint\": 1\n", "line 2: after tint: syntax error while parsing object"},
    {"{\"lumvik\": 2,\n\"tint\"", "line 2: after tint: syntax error while parsing object separator"},
    {"{\"lumvik\": 2} 2", "line 1: after lumvik: syntax error while parsing value"},
    {"{\"lumvik\": 2, \"tint\": 01}", "line 1: after tint: syntax error"},
    {"{\"lumvik\": 2, \"tint\": 1,}", "line 1: after tint: syntax error"},
    {"{\"lumvik\": 2, /* warm */ \"tint\": 1}", "line 1: after lumvik: syntax error"},
    {"{'lumvik': 2}", "line 1: syntax error while parsing object key - invalid literal"},
    {"{\"lumvik\": 2, \"t\xFFnt\": 1}", "line 1: after lumvik: syntax error"},
    {"{\"lumvik\": 2,\n\"tone_curves\": []}", "line 2: tone_curves: a list is not an object"},
    {"{\"lumvik\": 2,\n\"tone_curves\": {\"red\": 1}}",
     "line 2: tone_curves.red: 1 is not a list of points [x, y]"},
    {"{\"lumvik\": 2,\n\"tone_curves\": {\"red\": [[0, 0, 0]]}}",
     "line 2: tone_curves.red: a list is not a point [x, y]"},
    {"{\"lumvik\": 2,\n\"tone_curves\": {\"red\": [[0, 0], [1, 1.5]]}}",
     "line 2: tone_curves.red: 1.5 is not a number in 0..1"},
    {"{\"lumvik\": 2,\n\"tone_curves\": {\"red\": [[0, 0], [\"1\", 1]]}}",
     "line 2: tone_curves.red: \"1\" is not a number in 0..1"},
    {"{\"lumvik\": 2,\n\"tone_curves\": {\"red\": [[0, 0]]}}",
     "line 2: tone_curves.red: a curve needs at least two points"},
    {"{\"lumvik\": 2,\n\"tone_curves\": {\"red\": [[0, 0], [0, 1]]}}",
     "line 2: tone_curves.red: the points of a curve must be in ascending order of x"},
};

TEST(SettingsJsonTest, ErrorsNameLineAndKey) {
  for (const JsonFaultCase& fault : kJsonFaults) {
    EXPECT_EQ(ReadJson(fault.json), LUMVIK_HOST_INVALID_ARGUMENT) << fault.json;
    EXPECT_THAT(lumvik_host_last_error(), ::testing::StartsWith(fault.text));
  }
}

TEST(SettingsJsonTest, ANulIsNotTheEnd) {
  using std::string_literals::operator""s;
  ExpectFailure(ReadJson("{\"lumvik\": 2}\n\0"s), LUMVIK_HOST_INVALID_ARGUMENT,
                "line 2: a NUL character is not JSON");
  ExpectFailure(ReadJson("\0{\"lumvik\": 2}"s), LUMVIK_HOST_INVALID_ARGUMENT,
                "line 1: a NUL character is not JSON");
}

TEST(SettingsJsonTest, AByteOrderMarkIsSkipped) {
  EXPECT_EQ(ReadJson("\xEF\xBB\xBF{\"lumvik\": 2}"), LUMVIK_HOST_OK);
}

TEST(SettingsJsonTest, TheTextIsLimited) {
  constexpr std::size_t kLimit = 256 << 10;
  const std::string json = R"({"lumvik": 2})";
  EXPECT_EQ(ReadJson(json + std::string(kLimit - json.size(), ' ')), LUMVIK_HOST_OK);
  ExpectFailure(ReadJson(json + std::string(kLimit - json.size() + 1, ' ')), LUMVIK_HOST_INVALID_ARGUMENT,
                "the settings are too large");
}

// Text of which a line per key, with the keys that enclose it, would take gigabytes.
TEST(SettingsJsonTest, NestedAndLongKeysTakeLittleMemory) {
  std::string nested = R"({"lumvik": 2)";
  for (int i = 0; i < 40000; ++i) nested += R"(,"a":{"b":1)";
  nested.resize(200 << 10);
  ExpectFailure(ReadJson(nested), LUMVIK_HOST_INVALID_ARGUMENT, "the key is too long");

  std::string wide = R"({"lumvik": 2, ")" + std::string(100 << 10, 'k') + "\": {\"0\": 1";
  for (int i = 1; i < 10000; ++i) wide += ",\"" + std::to_string(i) + "\":1";
  ExpectFailure(ReadJson(wide + "}}"), LUMVIK_HOST_INVALID_ARGUMENT, "after lumvik: the key is too long");

  for (const char* text : {"[", "{\"\":", "[{\"\":"}) {
    std::string deep;
    while (deep.size() < (200 << 10)) deep += text;
    ExpectFailure(ReadJson(deep), LUMVIK_HOST_INVALID_ARGUMENT, "syntax error");
  }
}

}  // namespace
}  // namespace lumvik::host::test
