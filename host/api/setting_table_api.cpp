// Descriptions of settings.
#include <nlohmann/json.hpp>
#include <string>

#include "api/arguments.h"
#include "api/guard.h"
#include "lumvik_host.h"
#include "settings/settings.h"
#include "settings/settings_json.h"

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
  Json descriptions = Json::array();
  for (const SettingRule& rule : SettingRules()) {
    const lumvik_host_setting_info info = DescribeSetting(rule);
    descriptions.push_back({{"key", info.key},
                            {"kind", kKindNames[info.kind]},
                            {"label", info.label},
                            {"group", info.group},
                            {"unit", info.unit},
                            {"help", info.help},
                            {"minimum", info.minimum},
                            {"maximum", info.maximum},
                            {"neutral_value", info.neutral_value},
                            {"engine_value", info.engine_value}});
  }
  return descriptions.dump(2) + '\n';
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
