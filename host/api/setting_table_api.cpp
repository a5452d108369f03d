// Descriptions of settings.
#include <string>

#include "api/arguments.h"
#include "api/guard.h"
#include "lumvik_host.h"
#include "settings/json_writer.h"
#include "settings/settings.h"

namespace lumvik::host {
namespace {

constexpr const char* kKindNames[] = {"number", "flag", "curve", "band", "zone"};  // by kind

lumvik_host_setting_info DescribeSetting(const SettingRule& rule) {
  const auto number = [](const SettingValue& value) {
    const auto* held = std::get_if<float>(&value);
    return held == nullptr ? 0 : *held;
  };
  lumvik_host_setting_info info{};
  info.kind = rule.Kind();
  info.key = rule.key.c_str();
  info.label = rule.label.c_str();
  info.group = rule.group.c_str();
  info.unit = rule.unit.c_str();
  info.help = rule.help.c_str();
  info.minimum = rule.range.lowest;
  info.maximum = rule.range.highest;
  info.neutral_value = number(rule.NeutralValue());
  info.engine_value = number(rule.EngineValue());
  return info;
}

std::string SettingsDescription() {
  JsonWriter json;
  json.BeginList();
  for (const SettingRule& rule : SettingRules()) {
    const lumvik_host_setting_info info = DescribeSetting(rule);
    json.BeginObject();
    json.Add("key", JsonText(rule.key));
    json.Add("kind", JsonText(kKindNames[info.kind]));
    json.Add("label", JsonText(rule.label));
    json.Add("group", JsonText(rule.group));
    json.Add("unit", JsonText(rule.unit));
    json.Add("help", JsonText(rule.help));
    json.Add("minimum", JsonText(info.minimum));
    json.Add("maximum", JsonText(info.maximum));
    json.Add("neutral_value", JsonText(info.neutral_value));
    json.Add("engine_value", JsonText(info.engine_value));
    json.End();
  }
  json.End();
  return json.Text() + '\n';
}

}  // namespace
}  // namespace lumvik::host

using namespace lumvik::host;

size_t lumvik_host_setting_count() {
  return SettingRules().size();
}

lumvik_host_status lumvik_host_describe_setting(size_t index, lumvik_host_setting_info* info) {
  return Guarded([&] {
    RequireResult(info, "info");
    if (index >= SettingRules().size()) {
      throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, "there is no setting " + std::to_string(index));
    }
    StoreResult(DescribeSetting(SettingRules()[index]), info);
  });
}

lumvik_host_status lumvik_host_find_setting(const char* key, size_t* index) {
  return Guarded([&] {
    RequireArgument(key, "key");
    RequireArgument(index, "index");
    *index = static_cast<size_t>(&RequireSetting(key) - SettingRules().data());
  });
}

lumvik_host_status lumvik_host_describe_settings_json(char** json) {
  return Guarded([&] {
    RequireArgument(json, "json");
    *json = LendText(SettingsDescription());
  });
}
