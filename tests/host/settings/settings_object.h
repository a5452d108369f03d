// A settings object of the host library for tests.
#ifndef LUMVIK_TESTS_HOST_SETTINGS_SETTINGS_OBJECT_H_
#define LUMVIK_TESTS_HOST_SETTINGS_SETTINGS_OBJECT_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "lumvik_host.h"
#include "settings/settings.h"

namespace lumvik::host::test {

// Returns a text of the library and releases it.
inline std::string Released(char* text) {
  std::string copy = text == nullptr ? "(null)" : text;
  lumvik_host_free(text);
  return copy;
}

class SettingsObject {
 public:
  SettingsObject() { EXPECT_EQ(lumvik_host_settings_create(&handle_), LUMVIK_HOST_OK); }
  explicit SettingsObject(lumvik_host_settings* handle) : handle_(handle) {}
  ~SettingsObject() { EXPECT_EQ(lumvik_host_settings_close(handle_), LUMVIK_HOST_OK); }
  SettingsObject(const SettingsObject&) = delete;
  SettingsObject& operator=(const SettingsObject&) = delete;
  SettingsObject(SettingsObject&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}

  // From JSON, which must be valid.
  static SettingsObject From(const std::string& json) {
    lumvik_host_settings* handle = nullptr;
    EXPECT_EQ(lumvik_host_settings_from_json(json.data(), json.size(), &handle), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    return SettingsObject(handle);
  }

  lumvik_host_settings* Handle() const { return handle_; }

  std::string Text() const {
    char* text = nullptr;
    EXPECT_EQ(lumvik_host_settings_to_json(handle_, &text), LUMVIK_HOST_OK) << lumvik_host_last_error();
    return Released(text);
  }

  bool Has(const std::string& key) const {
    int32_t has = -1;
    EXPECT_EQ(lumvik_host_settings_has(handle_, key.c_str(), &has), LUMVIK_HOST_OK);
    return has == 1;
  }

  float Number(const std::string& key) const {
    float value = -12345;
    EXPECT_EQ(lumvik_host_settings_get_number(handle_, key.c_str(), &value), LUMVIK_HOST_OK) << key;
    return value;
  }

  void Set(const std::string& key, float value) const {
    EXPECT_EQ(lumvik_host_settings_set_number(handle_, key.c_str(), value), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
  }

  bool Equals(const SettingsObject& other) const {
    int32_t equal = -1;
    EXPECT_EQ(lumvik_host_settings_equal(handle_, other.handle_, &equal), LUMVIK_HOST_OK);
    return equal == 1;
  }

 private:
  lumvik_host_settings* handle_ = nullptr;
};

// Expects this status and a text of the calling thread that contains `part`.
inline void ExpectFailure(lumvik_host_status status, lumvik_host_status expected, const std::string& part) {
  EXPECT_EQ(status, expected) << lumvik_host_last_error();
  EXPECT_NE(std::string(lumvik_host_last_error()).find(part), std::string::npos)
      << lumvik_host_last_error() << "\nlacks\n"
      << part;
}

// A random value of a setting, within its range.
inline SettingValue RandomValue(const SettingRule& rule, std::mt19937& random) {
  std::uniform_real_distribution<float> number(rule.range.lowest, rule.range.highest);
  if (rule.Kind() == LUMVIK_HOST_FLAG) return random() % 2 == 0;
  if (rule.Kind() != LUMVIK_HOST_CURVE) return std::min(number(random), rule.range.highest);
  constexpr std::size_t kMaxRandomPoints = 20;
  ToneCurve curve(random() % kMaxRandomPoints);
  if (curve.size() == 1) curve.clear();
  std::uniform_real_distribution<float> level(0, 1);
  for (std::size_t i = 0; i < curve.size(); ++i) {
    const float x = (static_cast<float>(i) + level(random) / 2) / static_cast<float>(curve.size());
    curve[i] = {x, level(random)};
  }
  return curve;
}

// Random values for about this share of all settings.
inline Settings RandomSettings(std::mt19937& random, double share) {
  Settings settings;
  std::bernoulli_distribution is_held(share);
  for (const SettingRule& rule : SettingRules()) {
    if (is_held(random)) settings[rule.key] = RandomValue(rule, random);
  }
  return settings;
}

}  // namespace lumvik::host::test

#endif  // LUMVIK_TESTS_HOST_SETTINGS_SETTINGS_OBJECT_H_
