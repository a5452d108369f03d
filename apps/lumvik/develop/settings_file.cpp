#include "develop/settings_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>
#include <system_error>

#include "develop/settings_json.h"

namespace lumvik {
namespace {

// The key of the format version.
constexpr char kVersionKey[] = "lumvik";
constexpr int kVersion = 1;

// Far more than any settings need, and still parsed instantly.
constexpr std::uintmax_t kMaxSettingsBytes = 1 << 18;

// Converts JSON to settings. Throws JsonFault.
class Reader {
 public:
  explicit Reader(const std::string& text) : json_(ParseJson(text)) {}

  Settings Read() {
    if (!json_.root.is_object()) throw JsonFault(1, "", "a settings file must be an object: {...}");
    RequireVersion();
    ReadObject(json_.root, "");
    return std::move(settings_);
  }

 private:
  std::runtime_error Fault(const std::string& key, const std::string& why) const {
    return JsonFault(json_.lines.at(key), key, why);
  }

  void RequireVersion() {
    const std::string wanted = std::to_string(kVersion);
    const auto version = json_.root.find(kVersionKey);
    if (version == json_.root.end()) throw JsonFault(1, kVersionKey, "missing; it must be " + wanted);
    if (!version->is_number_integer() || *version != kVersion) {
      throw Fault(kVersionKey, Shown(*version) + " is not the supported version, " + wanted);
    }
    json_.root.erase(kVersionKey);
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
    if (std::holds_alternative<float>(rule.initial)) return Number(value, rule.key, rule.range);
    if (std::holds_alternative<ToneCurve>(rule.initial)) return Curve(value, rule.key);
    if (!value.is_boolean()) throw Fault(rule.key, Shown(value) + " is not true or false");
    return value.get<bool>();
  }

  float Number(const Json& value, const std::string& key, Range<float> range) const {
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

std::string ReadText(const std::string& path) {
  if (std::filesystem::file_size(std::filesystem::u8path(path)) > kMaxSettingsBytes)
    throw std::runtime_error("the file is too large");
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

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

Settings ReadSettings(const std::string& path) {
  try {
    return Reader(ReadText(path)).Read();
  } catch (const std::runtime_error& fault) {
    throw std::runtime_error("cannot use the settings '" + path + "': " + fault.what());
  }
}

std::string SettingsText(const Settings& settings) {
  Json json = {{kVersionKey, kVersion}};
  for (const SettingRule& rule : SettingRules()) {
    const auto setting = settings.find(rule.key);
    if (setting == settings.end()) continue;
    std::visit([&](const auto& value) { json[PointerTo(rule.key)] = value; }, setting->second);
  }
  return WithShortPoints(json.dump(2)) + '\n';
}

std::unique_ptr<StagedFile> StageSettings(const Settings& settings, const std::filesystem::path& target) {
  auto staged = std::make_unique<StagedFile>(target, kSettingsExtension);
  std::ofstream file(staged->TemporaryPath(), std::ios::binary);
  if (!(file << SettingsText(settings)).flush()) {
    throw std::runtime_error("cannot write '" + target.string() +
                             "': " + std::generic_category().message(errno));
  }
  return staged;
}

}  // namespace lumvik
