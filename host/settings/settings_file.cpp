#include "settings/settings_file.h"

#include <algorithm>
#include <cstdint>
#include <regex>
#include <utility>

#include "files/file_reading.h"
#include "settings/settings_json.h"

namespace lumvik::host {
namespace {

// The key of the format version.
constexpr char kVersionKey[] = "lumvik";
// In the first version, a missing temperature is that of the engine. Since the second it is neutral.
constexpr int kFirstVersion = 1;
constexpr int kVersion = 2;

// Far more than any settings need, and still parsed instantly.
constexpr std::uintmax_t kMaxSettingsBytes = 1 << 18;

// Converts JSON to settings. Throws JsonFault.
class SettingsReader {
 public:
  explicit SettingsReader(const std::string& text) : json_(ParseJson(text)) {}

  Settings Read() {
    if (!json_.root.is_object()) throw JsonFault(1, "", "a settings file must be an object: {...}");
    const int version = TakeVersion();
    ReadObject(json_.root, "");
    if (version == kFirstVersion) {
      const SettingRule& temperature = RequireSetting("temperature");
      settings_.emplace(temperature.key, temperature.EngineValue());
    }
    return std::move(settings_);
  }

 private:
  Failure Fault(const std::string& key, const std::string& why) const {
    return JsonFault(json_.lines.at(key), key, why);
  }

  int TakeVersion() {
    const auto entry = json_.root.find(kVersionKey);
    if (entry == json_.root.end()) {
      throw JsonFault(1, kVersionKey, "missing; it must be " + std::to_string(kVersion));
    }
    const Json version = *entry;
    if (!version.is_number_integer() || version < kFirstVersion || version > kVersion) {
      throw Fault(kVersionKey, Shown(version) + " is not a supported version, " +
                                   std::to_string(kFirstVersion) + " or " + std::to_string(kVersion));
    }
    json_.root.erase(kVersionKey);
    return version.get<int>();
  }

  // NOLINTNEXTLINE(misc-no-recursion): no deeper than the keys of the settings, whatever the file
  void ReadObject(const Json& object, const std::string& parent) {
    for (const auto& [key, value] : object.items()) {
      const std::string joined = JoinKeys(parent, key);
      // A dot within a key does not separate levels.
      const bool plain = key.find('.') == std::string::npos;
      if (const SettingRule* rule = plain ? FindSettingRule(joined) : nullptr) {
        settings_[joined] = Value(value, *rule);
      } else if (plain && IsGroup(joined)) {
        if (!value.is_object()) throw Fault(joined, Shown(value) + " is not an object");
        ReadObject(value, joined);
      } else {
        throw Fault(joined, "there is no such setting");
      }
    }
  }

  static bool IsGroup(const std::string& key) {
    return std::any_of(SettingRules().begin(), SettingRules().end(),
                       [&](const SettingRule& rule) { return rule.key.rfind(key + ".", 0) == 0; });
  }

  SettingValue Value(const Json& value, const SettingRule& rule) const {
    switch (rule.Kind()) {
      case LUMVIK_HOST_FLAG:
        if (!value.is_boolean()) throw Fault(rule.key, Shown(value) + " is not true or false");
        return value.get<bool>();
      case LUMVIK_HOST_CURVE:
        return Curve(value, rule.key);
      default:
        return Number(value, rule.key, rule.range);
    }
  }

  float Number(const Json& value, const std::string& key, const Range& range) const {
    if (!value.is_number() || !range.Holds(value.get<float>())) throw Fault(key, range.Fault(Shown(value)));
    return value.get<float>();
  }

  ToneCurve Curve(const Json& value, const std::string& key) const {
    if (!value.is_array()) throw Fault(key, Shown(value) + " is not a list of points [x, y]");
    ToneCurve curve;
    for (const Json& point : value) {
      if (!point.is_array() || point.size() != 2) throw Fault(key, Shown(point) + " is not a point [x, y]");
      curve.push_back({Number(point[0], key, kCurveLevels), Number(point[1], key, kCurveLevels)});
    }
    const std::string fault = curve.empty() ? "" : CurveFault(curve);
    if (!fault.empty()) throw Fault(key, fault);
    return curve;
  }

  static std::string Shown(const Json& value) {
    if (value.is_object()) return "an object";
    return value.is_array() ? "a list" : value.dump();
  }

  LocatedJson json_;
  Settings settings_;
};

// The JSON pointer of a setting: "/hsl/red/hue" for "hsl.red.hue".
Json::json_pointer PointerTo(std::string key) {
  std::replace(key.begin(), key.end(), '.', '/');
  return Json::json_pointer("/" + key);
}

// Joins the points of a curve, which Json breaks into four lines each.
std::string WithShortPoints(const std::string& text) {
  const std::regex point(R"(\[\s+([-+.\de]+),\s+([-+.\de]+)\s+\])");
  return std::regex_replace(text, point, "[$1, $2]");
}

}  // namespace

std::string SettingsText(const Settings& settings) {
  Json json = {{kVersionKey, kVersion}};
  for (const SettingRule& rule : SettingRules()) {
    const auto setting = settings.find(rule.key);
    if (setting == settings.end()) continue;
    std::visit([&](const auto& value) { json[PointerTo(rule.key)] = value; }, setting->second);
  }
  return WithShortPoints(json.dump(2)) + '\n';
}

Settings ParseSettings(std::string_view text) {
  if (text.size() > kMaxSettingsBytes) {
    throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, "the settings are too large");
  }
  return SettingsReader(std::string(text)).Read();
}

Settings ReadSettings(const std::string& path) {
  const std::string text = ReadFile(path, kMaxSettingsBytes);
  try {
    return ParseSettings(text);
  } catch (const Failure& fault) {
    throw Failure(fault.GetStatus(), "cannot use the settings '" + path + "': " + fault.what());
  }
}

}  // namespace lumvik::host
