#include "settings/settings.h"

#include <algorithm>
#include <utility>

namespace lumvik::host {
namespace {

Failure InvalidSetting(const std::string& key, const std::string& why) {
  return {LUMVIK_HOST_INVALID_ARGUMENT, key + ": " + why};
}

template <typename Value>
const SettingRule& RequireSettingOf(const std::string& key) {
  const SettingRule& rule = RequireSetting(key);
  if (!std::holds_alternative<Value>(rule.NeutralValue())) {
    throw InvalidSetting(key, std::is_same_v<Value, float>  ? "it is not a number"
                              : std::is_same_v<Value, bool> ? "it is not a flag"
                                                            : "it is not a curve");
  }
  return rule;
}

std::string CurveSizeFault(std::size_t count) {
  if (count < 2) return "a curve needs at least two points";
  if (count > kMaxCurvePoints) {
    return "a curve has at most " + std::to_string(kMaxCurvePoints) + " points";
  }
  return {};
}

void RequireInRange(const std::string& key, const Range& range, float value) {
  if (!range.Holds(value)) throw InvalidSetting(key, range.Fault(NumberText(value)));
}

}  // namespace

Settings NeutralSettings() {
  Settings settings;
  for (const SettingRule& rule : SettingRules()) settings.emplace(rule.key, rule.NeutralValue());
  return settings;
}

Settings EngineSettings() {
  Settings settings;
  for (const SettingRule& rule : SettingRules()) settings.emplace(rule.key, rule.EngineValue());
  return settings;
}

Settings Completed(Settings held) {
  Settings neutral = NeutralSettings();
  held.merge(neutral);
  return held;
}

void RemoveNeutral(Settings* held) {
  for (const SettingRule& rule : SettingRules()) {
    const auto value = held->find(rule.key);
    if (value != held->end() && value->second == rule.NeutralValue()) held->erase(value);
  }
}

const SettingRule& RequireSetting(const std::string& key) {
  const SettingRule* rule = FindSettingRule(key);
  if (rule == nullptr) throw InvalidSetting(key, "there is no such setting");
  return *rule;
}

void SetNumber(Settings* held, const std::string& key, float value) {
  RequireInRange(key, RequireSettingOf<float>(key).range, value);
  (*held)[key] = value;
}

void SetFlag(Settings* held, const std::string& key, bool value) {
  RequireSettingOf<bool>(key);
  (*held)[key] = value;
}

void SetCurve(Settings* held, const std::string& key, const float* points, std::size_t count) {
  RequireSettingOf<ToneCurve>(key);
  if (count > 0) {
    const std::string fault = CurveSizeFault(count);
    if (!fault.empty()) throw InvalidSetting(key, fault);
  }
  ToneCurve curve(count);
  for (std::size_t i = 0; i < count; ++i) {
    curve[i] = {points[2 * i], points[2 * i + 1]};
    for (const float level : curve[i]) RequireInRange(key, kCurveLevels, level);
  }
  const std::string fault = curve.empty() ? "" : CurveFault(curve);
  if (!fault.empty()) throw InvalidSetting(key, fault);
  (*held)[key] = std::move(curve);
}

template <typename Value>
Value ValueOf(const Settings& held, const std::string& key) {
  const SettingRule& rule = RequireSettingOf<Value>(key);
  const auto value = held.find(key);
  return std::get<Value>(value == held.end() ? rule.NeutralValue() : value->second);
}

template float ValueOf(const Settings& held, const std::string& key);
template bool ValueOf(const Settings& held, const std::string& key);
template ToneCurve ValueOf(const Settings& held, const std::string& key);

std::string CurveFault(const ToneCurve& curve) {
  std::string fault = CurveSizeFault(curve.size());
  const auto not_ascending = [](const auto& a, const auto& b) { return !(a[0] < b[0]); };
  if (fault.empty() && std::adjacent_find(curve.begin(), curve.end(), not_ascending) != curve.end()) {
    fault = "the points of a curve must be in ascending order of x";
  }
  return fault;
}

}  // namespace lumvik::host
