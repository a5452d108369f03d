// Passes settings to the engine.
#include <cstddef>
#include <string>

#include "settings/settings.h"

namespace lumvik::host {
namespace {

// Settings for which the engine has a function each.
void ApplySingle(const SettingRule& rule, const SettingValue& value, EngineContext* context) {
  if (const auto* set_number = std::get_if<NumberSetter>(&rule.setter)) {
    (*set_number)(context, std::get<float>(value));
  } else if (const auto* set_flag = std::get_if<FlagSetter>(&rule.setter)) {
    (*set_flag)(context, std::get<bool>(value) ? 1 : 0);
  } else if (const auto* curve_of = std::get_if<CurveOf>(&rule.setter)) {
    const auto& curve = std::get<ToneCurve>(value);
    if (curve.empty()) return;  // exactly linear, as after loading
    lumvik_set_tone_curve(context, curve_of->channel, curve.front().data(), static_cast<int>(curve.size()));
  }
}

// Settings that the engine takes several of at a time.
void ApplyJoint(const Settings& complete, EngineContext* context) {
  const auto number = [&](const std::string& key) { return std::get<float>(complete.at(key)); };
  for (int band = 0; band < LUMVIK_BAND_COUNT; ++band) {
    const std::string key = std::string("hsl.") + kBandNames[band];
    lumvik_set_hsl(context, band, number(key + ".hue"), number(key + ".saturation"),
                   number(key + ".luminance"));
  }
  const float balance = number("split_toning.balance");
  lumvik_set_split_toning(context, LUMVIK_ZONE_HIGHLIGHTS, number("split_toning.highlight_hue"),
                          number("split_toning.highlight_saturation"), balance);
  lumvik_set_split_toning(context, LUMVIK_ZONE_SHADOWS, number("split_toning.shadow_hue"),
                          number("split_toning.shadow_saturation"), balance);
  lumvik_set_crop(context, number("crop.x"), number("crop.y"), number("crop.w"), number("crop.h"));
}

}  // namespace

void Apply(const Settings& complete, EngineContext* context) {
  for (const SettingRule& rule : SettingRules()) ApplySingle(rule, complete.at(rule.key), context);
  ApplyJoint(complete, context);
}

}  // namespace lumvik::host
