// Develop settings: values for some of the keys of the setting table.
#ifndef LUMVIK_HOST_SETTINGS_SETTINGS_H_
#define LUMVIK_HOST_SETTINGS_SETTINGS_H_

#include <cstddef>
#include <map>
#include <string>
#include <variant>

#include "base/failure.h"
#include "lumvik.h"
#include "settings/setting_table.h"

namespace lumvik::host {

// By key. A setting without a value is neutral.
using Settings = std::map<std::string, SettingValue>;

// A value for every setting: neutral, or those of a context with a newly loaded photograph.
Settings NeutralSettings();
Settings EngineSettings();

// A value for every setting, neutral where none is held.
Settings Completed(Settings held);

void RemoveNeutral(Settings* held);

// The functions below throw Failure for an unknown key, for a setting of another kind, and for a value out of
// range.

const SettingRule& RequireSetting(const std::string& key);

void SetNumber(Settings* held, const std::string& key, float value);
void SetFlag(Settings* held, const std::string& key, bool value);
// `points` are `count` points, x and y in turn.
void SetCurve(Settings* held, const std::string& key, const float* points, std::size_t count);

// The value of a setting, as float, bool or ToneCurve: neutral if none is held.
template <typename Value>
Value ValueOf(const Settings& held, const std::string& key);

// An error message for an invalid curve; "" for a valid one.
std::string CurveFault(const ToneCurve& curve);

// Applies a value for every setting to a context with a newly loaded photograph, or one that was reset.
void Apply(const Settings& complete, EngineContext* context);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_SETTINGS_H_
