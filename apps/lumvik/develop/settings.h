// Develop settings: values for a fixed set of keys.
#ifndef LUMVIK_APPS_DEVELOP_SETTINGS_H_
#define LUMVIK_APPS_DEVELOP_SETTINGS_H_

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include "lumvik.h"
#include "options/range.h"

namespace lumvik {

using ToneCurve = std::vector<std::array<float, 2>>;  // points (x, y); empty: linear
using SettingValue = std::variant<float, bool, ToneCurve>;

// By key, such as "exposure" or "hsl.red.hue". The settings of one source, such as a file, hold only what it
// gives; sources are combined with std::map::merge, where the first one wins.
using Settings = std::map<std::string, SettingValue>;

struct SettingRule {
  std::string key;
  SettingValue initial;  // the engine's default; determines the type
  Range<float> range{};  // for numbers
};

inline constexpr Range<float> kCurveLevels = {0, 1};
inline constexpr std::size_t kMaxCurvePoints = 1024;  // keeps a settings file within its size limit
inline constexpr const char* kCurveNames[] = {"master", "red", "green",
                                              "blue"};  // indexed by the engine's channel

// One rule per setting, in the order of a settings file.
const std::vector<SettingRule>& SettingRules();

// The rule for a key; null for an unknown key.
const SettingRule* FindSettingRule(const std::string& key);

// An error message for an invalid curve; "" for a valid one.
std::string CurveFault(const ToneCurve& curve);

// A value for every setting: those of a context with a newly loaded photograph.
Settings DefaultSettings();

// Applies a value for every setting to a context with a newly loaded photograph.
void Apply(const Settings& complete, EngineContext* context);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_SETTINGS_H_
