// Values of settings objects.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "lumvik_host.h"
#include "settings/settings_object.h"

namespace lumvik::host::test {
namespace {

constexpr float kInfiniteValue = std::numeric_limits<float>::infinity();
constexpr float kNanValue = std::numeric_limits<float>::quiet_NaN();

class SettingsValuesTest : public ::testing::Test {
 protected:
  lumvik_host_status SetNumber(const char* key, float value) const {
    return lumvik_host_settings_set_number(settings_.Handle(), key, value);
  }
  lumvik_host_status SetCurve(const char* key, const std::vector<float>& points) const {
    return lumvik_host_settings_set_curve(settings_.Handle(), key, points.data(), points.size() / 2);
  }
  std::vector<float> Curve(const char* key) const {
    std::vector<float> points(2 * kMaxCurvePoints, -1);
    std::size_t count = 0;
    EXPECT_EQ(lumvik_host_settings_get_curve(settings_.Handle(), key, points.data(), kMaxCurvePoints, &count),
              LUMVIK_HOST_OK);
    points.resize(2 * count);
    return points;
  }

  SettingsObject settings_;
};

TEST_F(SettingsValuesTest, ANewObjectIsNeutral) {
  for (const SettingRule& rule : SettingRules()) EXPECT_FALSE(settings_.Has(rule.key)) << rule.key;
  EXPECT_EQ(settings_.Number("temperature"), 6500);
  EXPECT_EQ(settings_.Number("grain_size"), 25);
  int32_t flag = -1;
  EXPECT_EQ(lumvik_host_settings_get_flag(settings_.Handle(), "flip_h", &flag), LUMVIK_HOST_OK);
  EXPECT_EQ(flag, 0);
  EXPECT_TRUE(Curve("tone_curves.red").empty());
}

TEST_F(SettingsValuesTest, EveryNumberTakesItsRangeAndNothingElse) {
  for (const SettingRule& rule : SettingRules()) {
    if (!std::holds_alternative<float>(rule.NeutralValue())) continue;
    const char* const key = rule.key.c_str();
    for (const float value : {rule.range.lowest, rule.range.highest}) {
      settings_.Set(key, value);
      EXPECT_EQ(settings_.Number(key), value) << key;
    }
    for (const float value : {std::nextafter(rule.range.lowest, -kInfiniteValue),
                              std::nextafter(rule.range.highest, kInfiniteValue), kNanValue, kInfiniteValue,
                              -kInfiniteValue, std::numeric_limits<float>::max()}) {
      ExpectFailure(SetNumber(key, value), LUMVIK_HOST_INVALID_ARGUMENT,
                    rule.key + ": " + rule.range.Fault(NumberText(value)));
      EXPECT_EQ(settings_.Number(key), rule.range.highest) << key << ' ' << value;
    }
  }
}

TEST_F(SettingsValuesTest, MessagesAreForAPerson) {
  ExpectFailure(SetNumber("sharpening_radius", 0), LUMVIK_HOST_INVALID_ARGUMENT,
                "sharpening_radius: 0 is not a number in 0.01..100");
  ExpectFailure(SetNumber("exposure", kNanValue), LUMVIK_HOST_INVALID_ARGUMENT,
                "exposure: nan is not a number in -10..10");
  ExpectFailure(SetNumber("sharpening_threshold", -0.5F), LUMVIK_HOST_INVALID_ARGUMENT,
                "-0.5 is not a number in 0..65535");
  ExpectFailure(SetNumber("temperature", 1e6F), LUMVIK_HOST_INVALID_ARGUMENT,
                "1e+06 is not a number in 1667..25000");
}

TEST_F(SettingsValuesTest, AFlagIsAnyValueButZero) {
  for (const int32_t value : {1, -1, 0, std::numeric_limits<int32_t>::min(), 0, 256}) {
    ASSERT_EQ(lumvik_host_settings_set_flag(settings_.Handle(), "flip_v", value), LUMVIK_HOST_OK);
    int32_t flag = -1;
    ASSERT_EQ(lumvik_host_settings_get_flag(settings_.Handle(), "flip_v", &flag), LUMVIK_HOST_OK);
    EXPECT_EQ(flag, value != 0 ? 1 : 0);
  }
  EXPECT_TRUE(settings_.Has("flip_v"));
}

TEST_F(SettingsValuesTest, SettingsOfOtherKindsAreRefused) {
  lumvik_host_settings* const handle = settings_.Handle();
  const float point[] = {0, 0, 1, 1};
  float number = 7;
  int32_t flag = 7;
  std::size_t count = 7;
  for (const char* key : {"flip_h", "tone_curves.master"}) {
    ExpectFailure(SetNumber(key, 0), LUMVIK_HOST_INVALID_ARGUMENT, std::string(key) + ": it is not a number");
    ExpectFailure(lumvik_host_settings_get_number(handle, key, &number), LUMVIK_HOST_INVALID_ARGUMENT,
                  "not a number");
  }
  for (const char* key : {"exposure", "hsl.red.hue", "tone_curves.red"}) {
    ExpectFailure(lumvik_host_settings_set_flag(handle, key, 1), LUMVIK_HOST_INVALID_ARGUMENT, "not a flag");
    ExpectFailure(lumvik_host_settings_get_flag(handle, key, &flag), LUMVIK_HOST_INVALID_ARGUMENT,
                  "not a flag");
  }
  for (const char* key : {"exposure", "flip_h", "split_toning.shadow_hue"}) {
    ExpectFailure(lumvik_host_settings_set_curve(handle, key, point, 2), LUMVIK_HOST_INVALID_ARGUMENT,
                  "not a curve");
    ExpectFailure(lumvik_host_settings_get_curve(handle, key, nullptr, 0, &count),
                  LUMVIK_HOST_INVALID_ARGUMENT, "not a curve");
  }
  EXPECT_EQ(number, 7);
  EXPECT_EQ(flag, 7);
  EXPECT_EQ(count, 7U);
  EXPECT_TRUE(settings_.Equals(SettingsObject()));
}

TEST_F(SettingsValuesTest, UnknownKeysAreRefused) {
  lumvik_host_settings* const handle = settings_.Handle();
  float number = 0;
  int32_t flag = 0;
  std::size_t count = 0;
  const std::string why = "sepia: there is no such setting";
  ExpectFailure(SetNumber("sepia", 0), LUMVIK_HOST_INVALID_ARGUMENT, why);
  ExpectFailure(lumvik_host_settings_get_number(handle, "sepia", &number), LUMVIK_HOST_INVALID_ARGUMENT, why);
  ExpectFailure(lumvik_host_settings_set_flag(handle, "sepia", 1), LUMVIK_HOST_INVALID_ARGUMENT, why);
  ExpectFailure(lumvik_host_settings_get_flag(handle, "sepia", &flag), LUMVIK_HOST_INVALID_ARGUMENT, why);
  ExpectFailure(lumvik_host_settings_set_curve(handle, "sepia", nullptr, 0), LUMVIK_HOST_INVALID_ARGUMENT,
                why);
  ExpectFailure(lumvik_host_settings_get_curve(handle, "sepia", nullptr, 0, &count),
                LUMVIK_HOST_INVALID_ARGUMENT, why);
  ExpectFailure(lumvik_host_settings_has(handle, "sepia", &flag), LUMVIK_HOST_INVALID_ARGUMENT, why);
  ExpectFailure(lumvik_host_settings_remove(handle, "sepia"), LUMVIK_HOST_INVALID_ARGUMENT, why);
}

TEST_F(SettingsValuesTest, CurvesAreCopied) {
  const std::vector<float> points = {0, 0.25F, 0.5F, 0, 1, 1};
  ASSERT_EQ(SetCurve("tone_curves.green", points), LUMVIK_HOST_OK);
  EXPECT_EQ(Curve("tone_curves.green"), points);
  EXPECT_TRUE(Curve("tone_curves.red").empty());
  ASSERT_EQ(SetCurve("tone_curves.green", {}), LUMVIK_HOST_OK);
  EXPECT_TRUE(Curve("tone_curves.green").empty());
  EXPECT_TRUE(settings_.Has("tone_curves.green"));
}

TEST_F(SettingsValuesTest, InvalidCurvesAreRefused) {
  struct InvalidCurve {
    std::vector<float> points;
    const char* why;
  };
  const InvalidCurve invalid[] = {
      {{0, 0}, "a curve needs at least two points"},
      {{0, 0, 0, 1}, "ascending order of x"},
      {{0.5F, 0, 0.25F, 1}, "ascending order of x"},
      {{-0.1F, 0, 1, 1}, "-0.1 is not a number in 0..1"},
      {{0, 0, 1, 1.5F}, "1.5 is not a number in 0..1"},
      {{0, kNanValue, 1, 1}, "nan is not a number in 0..1"},
      {{0, 0, kNanValue, 1}, "nan is not a number in 0..1"},
      {{0, 0, 1, kInfiniteValue}, "inf is not a number in 0..1"},
      {std::vector<float>(2 * (kMaxCurvePoints + 1)), "a curve has at most 1024 points"},
  };
  const std::vector<float> held = {0, 1, 1, 0};
  ASSERT_EQ(SetCurve("tone_curves.red", held), LUMVIK_HOST_OK);
  for (const InvalidCurve& curve : invalid) {
    ExpectFailure(SetCurve("tone_curves.red", curve.points), LUMVIK_HOST_INVALID_ARGUMENT,
                  "tone_curves.red: ");
    EXPECT_THAT(lumvik_host_last_error(), ::testing::EndsWith(curve.why));
    EXPECT_EQ(Curve("tone_curves.red"), held);
  }
  const float one = 0;  // of which only the address is passed
  ExpectFailure(lumvik_host_settings_set_curve(settings_.Handle(), "tone_curves.red", &one,
                                               std::numeric_limits<std::size_t>::max()),
                LUMVIK_HOST_INVALID_ARGUMENT, "at most 1024 points");
}

TEST_F(SettingsValuesTest, TheLongestCurveIsHeld) {
  std::vector<float> points;
  for (std::size_t i = 0; i < kMaxCurvePoints; ++i) {
    points.insert(points.end(), {static_cast<float>(i) / (kMaxCurvePoints - 1), 0.5F});
  }
  ASSERT_EQ(SetCurve("tone_curves.master", points), LUMVIK_HOST_OK);
  EXPECT_EQ(Curve("tone_curves.master"), points);
}

TEST_F(SettingsValuesTest, ASmallBufferIsNotWritten) {
  ASSERT_EQ(SetCurve("tone_curves.red", {0, 0.5F, 1, 1}), LUMVIK_HOST_OK);
  float points[] = {7, 7, 7, 7};
  std::size_t count = 0;
  for (const std::size_t capacity : {0U, 1U}) {
    count = 0;
    ExpectFailure(
        lumvik_host_settings_get_curve(settings_.Handle(), "tone_curves.red", points, capacity, &count),
        LUMVIK_HOST_BUFFER_TOO_SMALL, "the curve has 2 points");
    EXPECT_EQ(count, 2U);
  }
  EXPECT_THAT(points, ::testing::Each(7));
  EXPECT_EQ(lumvik_host_settings_get_curve(settings_.Handle(), "tone_curves.red", points, 2, &count),
            LUMVIK_HOST_OK);
  EXPECT_THAT(points, ::testing::ElementsAre(0, 0.5F, 1, 1));
}

TEST_F(SettingsValuesTest, RemovedValuesAreNeutral) {
  settings_.Set("temperature", 5000);
  ASSERT_EQ(lumvik_host_settings_remove(settings_.Handle(), "temperature"), LUMVIK_HOST_OK);
  EXPECT_FALSE(settings_.Has("temperature"));
  EXPECT_EQ(settings_.Number("temperature"), 6500);
  EXPECT_EQ(lumvik_host_settings_remove(settings_.Handle(), "temperature"), LUMVIK_HOST_OK);
}

TEST_F(SettingsValuesTest, ClearRemovesAllValues) {
  ASSERT_EQ(lumvik_host_settings_set_engine_values(settings_.Handle()), LUMVIK_HOST_OK);
  for (const SettingRule& rule : SettingRules()) EXPECT_TRUE(settings_.Has(rule.key)) << rule.key;
  EXPECT_EQ(settings_.Number("temperature"), 5500);
  EXPECT_FALSE(settings_.Equals(SettingsObject()));
  ASSERT_EQ(lumvik_host_settings_clear(settings_.Handle()), LUMVIK_HOST_OK);
  for (const SettingRule& rule : SettingRules()) EXPECT_FALSE(settings_.Has(rule.key)) << rule.key;
}

TEST_F(SettingsValuesTest, ACopyIsIndependent) {
  settings_.Set("exposure", 1);
  lumvik_host_settings* handle = nullptr;
  ASSERT_EQ(lumvik_host_settings_copy(settings_.Handle(), &handle), LUMVIK_HOST_OK);
  const SettingsObject copy(handle);
  settings_.Set("exposure", 2);
  EXPECT_EQ(copy.Number("exposure"), 1);
}

TEST_F(SettingsValuesTest, MergeTakesOverWhatTheOtherHas) {
  settings_.Set("exposure", 1);
  settings_.Set("contrast", 20);
  const SettingsObject other;
  other.Set("contrast", 0);
  other.Set("tint", 3);
  ASSERT_EQ(lumvik_host_settings_merge(settings_.Handle(), other.Handle()), LUMVIK_HOST_OK);
  EXPECT_EQ(settings_.Number("exposure"), 1);
  EXPECT_EQ(settings_.Number("contrast"), 0);
  EXPECT_EQ(settings_.Number("tint"), 3);
  EXPECT_FALSE(other.Has("exposure"));
  EXPECT_EQ(lumvik_host_settings_merge(settings_.Handle(), settings_.Handle()), LUMVIK_HOST_OK);
  EXPECT_EQ(settings_.Number("tint"), 3);
}

TEST_F(SettingsValuesTest, RemoveNeutralKeepsWhatDiffers) {
  ASSERT_EQ(lumvik_host_settings_set_engine_values(settings_.Handle()), LUMVIK_HOST_OK);
  settings_.Set("exposure", 1);
  ASSERT_EQ(SetCurve("tone_curves.red", {0, 0, 1, 1}), LUMVIK_HOST_OK);
  ASSERT_EQ(lumvik_host_settings_set_flag(settings_.Handle(), "flip_h", 1), LUMVIK_HOST_OK);
  ASSERT_EQ(lumvik_host_settings_remove_neutral(settings_.Handle()), LUMVIK_HOST_OK);
  std::vector<std::string> held;
  for (const SettingRule& rule : SettingRules()) {
    if (settings_.Has(rule.key)) held.push_back(rule.key);
  }
  EXPECT_THAT(held, ::testing::UnorderedElementsAre("exposure", "temperature", "tone_curves.red", "flip_h"));
}

TEST_F(SettingsValuesTest, ObjectsAreEqualIfTheyDevelopAlike) {
  const SettingsObject other;
  other.Set("temperature", 6500);
  EXPECT_TRUE(settings_.Equals(other));
  EXPECT_TRUE(other.Equals(settings_));
  EXPECT_TRUE(settings_.Equals(settings_));
  settings_.Set("exposure", -0.0F);
  EXPECT_TRUE(settings_.Equals(other));
  settings_.Set("exposure", 0.1F);
  EXPECT_FALSE(settings_.Equals(other));
  EXPECT_FALSE(other.Equals(settings_));
}

TEST_F(SettingsValuesTest, AClosedObjectIsRefused) {
  lumvik_host_settings* handle = nullptr;
  ASSERT_EQ(lumvik_host_settings_create(&handle), LUMVIK_HOST_OK);
  ASSERT_EQ(lumvik_host_settings_close(handle), LUMVIK_HOST_OK);
  ExpectFailure(lumvik_host_settings_clear(handle), LUMVIK_HOST_INVALID_HANDLE, "closed");
  ExpectFailure(lumvik_host_settings_close(handle), LUMVIK_HOST_INVALID_HANDLE, "closed");
  EXPECT_EQ(lumvik_host_settings_close(nullptr), LUMVIK_HOST_OK);
}

}  // namespace
}  // namespace lumvik::host::test
