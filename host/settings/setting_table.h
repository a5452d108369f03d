// Everything known about each setting.
#ifndef LUMVIK_HOST_SETTINGS_SETTING_TABLE_H_
#define LUMVIK_HOST_SETTINGS_SETTING_TABLE_H_

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "lumvik.h"
#include "lumvik_host.h"
#include "settings/range.h"

namespace lumvik::host {

using ToneCurve = std::vector<std::array<float, 2>>;  // points (x, y); empty: linear
using SettingValue = std::variant<float, bool, ToneCurve>;

// How the engine takes a setting, which determines its kind.
using NumberSetter = void (*)(EngineContext*, float);
using FlagSetter = void (*)(EngineContext*, int);
struct CurveOf {
  int channel;  // of lumvik_set_tone_curve()
};
struct Jointly {  // by one call with others
  lumvik_host_setting_kind kind;
};
using Setter = std::variant<NumberSetter, FlagSetter, CurveOf, Jointly>;

struct SettingRule {
  std::string group;
  std::string key;  // with dots between the levels of a settings file
  std::string label;
  Setter setter;
  float neutral;  // of a number; flags are false, curves linear
  Range range;
  std::string unit;
  std::string help;
  std::optional<float> engine = std::nullopt;  // what the engine has after loading, where it is not neutral

  lumvik_host_setting_kind Kind() const;
  SettingValue NeutralValue() const;
  SettingValue EngineValue() const;
};

inline constexpr Range kCurveLevels = {0, 1};
inline constexpr std::size_t kMaxCurvePoints = 1024;  // keeps a settings file within its size limit

// Indexed by the engine's channel and band.
inline constexpr const char* kCurveNames[] = {"master", "red", "green", "blue"};
inline constexpr const char* kBandNames[LUMVIK_BAND_COUNT] = {"red",  "orange", "yellow", "green",
                                                              "aqua", "blue",   "purple", "magenta"};

// "Red" for "red".
std::string Capitalized(std::string name);

// One rule per setting, in the order of a settings file.
const std::vector<SettingRule>& SettingRules();

// The rule for a key; null for an unknown key.
const SettingRule* FindSettingRule(const std::string& key);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_SETTING_TABLE_H_
