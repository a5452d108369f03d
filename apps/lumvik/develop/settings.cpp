#include "develop/settings.h"

#include <algorithm>
#include <iterator>

#include "develop/single_settings.h"

namespace lumvik {
namespace {

constexpr const char* kBandNames[LUMVIK_BAND_COUNT] = {
    "red", "orange", "yellow", "green", "aqua", "blue", "purple", "magenta"};  // indexed by the engine's band

constexpr Range<float> kPercent = {-100, 100};
constexpr Range<float> kPositivePercent = {0, 100};
constexpr Range<float> kHueShift = {-180, 180};
constexpr Range<float> kHue = {0, 360};
constexpr Range<float> kFraction = {0, 1};

std::string CurveKey(const char* name) {
  return std::string("tone_curves.") + name;
}

std::string BandKey(const char* name) {
  return std::string("hsl.") + name;
}

std::vector<SettingRule> MakeRules() {
  std::vector<SettingRule> rules;
  for (const SingleSetting& single : kSingleSettings)
    rules.push_back({single.key, single.initial, single.range});
  for (const char* name : kCurveNames) rules.push_back({CurveKey(name), ToneCurve()});
  for (const char* name : kBandNames) {
    rules.push_back({BandKey(name) + ".hue", 0.0F, kHueShift});
    rules.push_back({BandKey(name) + ".saturation", 0.0F, kPercent});
    rules.push_back({BandKey(name) + ".luminance", 0.0F, kPercent});
  }
  rules.push_back({"split_toning.highlight_hue", 0.0F, kHue});
  rules.push_back({"split_toning.highlight_saturation", 0.0F, kPositivePercent});
  rules.push_back({"split_toning.shadow_hue", 0.0F, kHue});
  rules.push_back({"split_toning.shadow_saturation", 0.0F, kPositivePercent});
  rules.push_back({"split_toning.balance", 0.0F, kPercent});
  for (const char* side : {"x", "y", "w", "h"}) {
    rules.push_back({std::string("crop.") + side, 0.0F, kFraction});
  }
  rules.push_back({"flip_h", false});
  rules.push_back({"flip_v", false});
  return rules;
}

}  // namespace

const std::vector<SettingRule>& SettingRules() {
  static const std::vector<SettingRule> kRules = MakeRules();
  return kRules;
}

const SettingRule* FindSettingRule(const std::string& key) {
  const auto rule = std::find_if(SettingRules().begin(), SettingRules().end(),
                                 [&](const SettingRule& candidate) { return candidate.key == key; });
  return rule == SettingRules().end() ? nullptr : &*rule;
}

std::string CurveFault(const ToneCurve& curve) {
  if (curve.size() < 2) return "a curve needs at least two points";
  if (curve.size() > kMaxCurvePoints) {
    return "a curve has at most " + std::to_string(kMaxCurvePoints) + " points";
  }
  const auto not_ascending = [](const auto& a, const auto& b) { return !(a[0] < b[0]); };
  if (std::adjacent_find(curve.begin(), curve.end(), not_ascending) != curve.end()) {
    return "the points of a curve must be in ascending order of x";
  }
  return {};
}

Settings DefaultSettings() {
  Settings settings;
  for (const SettingRule& rule : SettingRules()) settings.emplace(rule.key, rule.initial);
  return settings;
}

void Apply(const Settings& complete, EngineContext* context) {
  const auto number = [&](const std::string& key) { return std::get<float>(complete.at(key)); };
  const auto flag = [&](const std::string& key) { return std::get<bool>(complete.at(key)) ? 1 : 0; };

  for (const SingleSetting& single : kSingleSettings) single.set(context, number(single.key));
  for (int channel = 0; channel < static_cast<int>(std::size(kCurveNames)); ++channel) {
    const auto& curve = std::get<ToneCurve>(complete.at(CurveKey(kCurveNames[channel])));
    if (curve.empty()) continue;  // linear, as after loading
    lumvik_set_tone_curve(context, channel, curve.front().data(), static_cast<int>(curve.size()));
  }
  for (int band = 0; band < LUMVIK_BAND_COUNT; ++band) {
    const std::string key = BandKey(kBandNames[band]);
    lumvik_set_hsl(context, band, number(key + ".hue"), number(key + ".saturation"),
                   number(key + ".luminance"));
  }
  const float balance = number("split_toning.balance");
  lumvik_set_split_toning(context, LUMVIK_ZONE_HIGHLIGHTS, number("split_toning.highlight_hue"),
                          number("split_toning.highlight_saturation"), balance);
  lumvik_set_split_toning(context, LUMVIK_ZONE_SHADOWS, number("split_toning.shadow_hue"),
                          number("split_toning.shadow_saturation"), balance);
  lumvik_set_crop(context, number("crop.x"), number("crop.y"), number("crop.w"), number("crop.h"));
  lumvik_set_flip_h(context, flag("flip_h"));
  lumvik_set_flip_v(context, flag("flip_v"));
}

}  // namespace lumvik
