#include "settings/settings_file.h"

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <utility>

#include "files/file_reading.h"
#include "settings/json_writer.h"
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
    if (json_.root.kind != JsonValue::Kind::kObject)
      throw JsonFault(1, "", "a settings file must be an object: {...}");
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
    auto& members = json_.root.members;
    const auto entry = std::find_if(members.begin(), members.end(),
                                    [](const auto& member) { return member.first == kVersionKey; });
    if (entry == members.end()) {
      throw JsonFault(1, kVersionKey, "missing; it must be " + std::to_string(kVersion));
    }
    const JsonValue version = std::move(entry->second);
    if (version.kind != JsonValue::Kind::kInteger || version.number < kFirstVersion ||
        version.number > kVersion) {
      throw Fault(kVersionKey, Shown(version) + " is not a supported version, " +
                                   std::to_string(kFirstVersion) + " or " + std::to_string(kVersion));
    }
    members.erase(entry);
    return static_cast<int>(version.number);
  }

  // NOLINTNEXTLINE(misc-no-recursion): no deeper than the keys of the settings, whatever the file
  void ReadObject(const JsonValue& object, const std::string& parent) {
    for (const auto& [key, value] : object.members) {
      const std::string joined = JoinKeys(parent, key);
      // A dot within a key does not separate levels.
      const bool plain = key.find('.') == std::string::npos;
      if (const SettingRule* rule = plain ? FindSettingRule(joined) : nullptr) {
        settings_[joined] = Value(value, *rule);
      } else if (plain && IsGroup(joined)) {
        if (value.kind != JsonValue::Kind::kObject) throw Fault(joined, Shown(value) + " is not an object");
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

  SettingValue Value(const JsonValue& value, const SettingRule& rule) const {
    switch (rule.Kind()) {
      case LUMVIK_HOST_FLAG:
        if (value.kind != JsonValue::Kind::kFlag)
          throw Fault(rule.key, Shown(value) + " is not true or false");
        return value.number != 0;
      case LUMVIK_HOST_CURVE:
        return Curve(value, rule.key);
      default:
        return Number(value, rule.key, rule.range);
    }
  }

  float Number(const JsonValue& value, const std::string& key, const Range& range) const {
    if (!value.IsNumber() || !range.Holds(value.number)) throw Fault(key, range.Fault(Shown(value)));
    return value.number;
  }

  ToneCurve Curve(const JsonValue& value, const std::string& key) const {
    if (value.kind != JsonValue::Kind::kList)
      throw Fault(key, Shown(value) + " is not a list of points [x, y]");
    ToneCurve curve;
    for (const auto& [no_key, point] : value.members) {
      if (point.kind != JsonValue::Kind::kList || point.members.size() != 2) {
        throw Fault(key, Shown(point) + " is not a point [x, y]");
      }
      curve.push_back({Number(point.members[0].second, key, kCurveLevels),
                       Number(point.members[1].second, key, kCurveLevels)});
    }
    const std::string fault = curve.empty() ? "" : CurveFault(curve);
    if (!fault.empty()) throw Fault(key, fault);
    return curve;
  }

  static std::string Shown(const JsonValue& value) {
    if (value.kind == JsonValue::Kind::kObject) return "an object";
    return value.kind == JsonValue::Kind::kList ? "a list" : value.text;
  }

  LocatedJson json_;
  Settings settings_;
};

std::string PointText(const std::array<float, 2>& point) {
  return '[' + JsonText(point[0]) + ", " + JsonText(point[1]) + ']';
}

void WriteSetting(JsonWriter& json, const std::string& key, const SettingValue& value) {
  if (const auto* curve = std::get_if<ToneCurve>(&value)) {
    json.BeginList(key);
    for (const auto& point : *curve) json.Add("", PointText(point));
    json.End();
  } else if (const auto* flag = std::get_if<bool>(&value)) {
    json.Add(key, JsonText(*flag));
  } else {
    json.Add(key, JsonText(std::get<float>(value)));
  }
}

// "hsl", "red" and "hue" of "hsl.red.hue".
std::vector<std::string> LevelsOf(const std::string& key) {
  std::vector<std::string> levels;
  std::istringstream rest(key);
  for (std::string level; std::getline(rest, level, '.');) levels.push_back(level);
  return levels;
}

}  // namespace

std::string SettingsText(const Settings& settings) {
  JsonWriter json;
  json.BeginObject();
  json.Add(kVersionKey, JsonText(kVersion));
  std::vector<std::string> open;  // the groups; the settings of one follow one another
  for (const SettingRule& rule : SettingRules()) {
    const auto setting = settings.find(rule.key);
    if (setting == settings.end()) continue;
    std::vector<std::string> groups = LevelsOf(rule.key);
    const std::string key = groups.back();
    groups.pop_back();
    const auto parting = std::mismatch(open.begin(), open.end(), groups.begin(), groups.end());
    for (auto group = parting.first; group != open.end(); ++group) json.End();
    for (auto group = parting.second; group != groups.end(); ++group) json.BeginObject(*group);
    open = groups;
    WriteSetting(json, key, setting->second);
  }
  for (std::size_t i = 0; i <= open.size(); ++i) json.End();
  return json.Text() + '\n';
}

Settings ParseSettings(std::string_view text) {
  if (text.size() > kMaxSettingsBytes) {
    throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, "the settings are too large");
  }
  return SettingsReader(std::string(text)).Read();
}

Settings ReadSettings(const std::string& path) {
  const std::string text = ReadFile(path, kMaxSettingsBytes);
  if (text.empty()) throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, "'" + path + "' is empty");
  try {
    return ParseSettings(text);
  } catch (const Failure& fault) {
    throw Failure(fault.GetStatus(), "cannot use the settings '" + path + "': " + fault.what());
  }
}

}  // namespace lumvik::host
