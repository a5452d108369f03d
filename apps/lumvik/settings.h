// How a photograph is to be developed: a value for each of a fixed set of keys.
#ifndef LUMVIK_APPS_SETTINGS_H_
#define LUMVIK_APPS_SETTINGS_H_

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "lumvik.h"
#include "range.h"

namespace lumvik {

using ToneCurve = std::vector<std::array<float, 2>>;  // points x, y; none: the engine's straight line
using SettingValue = std::variant<float, bool, ToneCurve>;

// By key, such as "exposure" or "hsl.red.hue". The settings of one source, a file or a command line, hold
// what it gives; sources are put together by std::map::merge, in which the first one wins.
using Settings = std::map<std::string, SettingValue>;

struct SettingRule {
  std::string key;
  SettingValue initial;  // what the engine begins with; it also tells the kind of the values
  Range<float> range{};  // of a number
};

inline constexpr Range<float> kCurveLevels = {0, 1};
inline constexpr std::size_t kMaxCurvePoints = 1024;  // with which a settings file stays within its limit
inline constexpr const char* kCurveNames[] = {"master", "red", "green", "blue"};  // by the engine's channel

// One rule for each setting, in the order of a settings file.
const std::vector<SettingRule>& SettingRules();

// The rule of a key; null when there is no such setting.
const SettingRule* FindSettingRule(const std::string& key);

// Why the engine should not get this curve; "" when it may.
std::string CurveFault(const ToneCurve& curve);

// A value for every setting, that of a context after loading a photograph.
Settings DefaultSettings();

// Gives settings for every key to a context whose photograph has just been loaded.
void Apply(const Settings& complete, EngineContext* context);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SETTINGS_H_
