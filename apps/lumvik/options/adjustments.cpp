#include "options/adjustments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "options/in_range.h"
#include "options/number_list.h"

namespace lumvik {
namespace {

constexpr Range<float> kCurveLevels = {0, 1};
constexpr char kMasterCurve[] = "tone_curves.master";

// An option that sets several numbers.
struct ListOption {
  const char* name;
  const char* form;
  const char* help;
  std::vector<std::string> keys;
};

const std::vector<ListOption>& ListOptions() {
  static const std::vector<ListOption> kLists = {
      {"--split-highlights",
       "HUE,SATURATION",
       "Tint the highlights: 0..360 degrees, 0..100 percent",
       {"split_toning.highlight_hue", "split_toning.highlight_saturation"}},
      {"--split-shadows",
       "HUE,SATURATION",
       "Tint the shadows: 0..360 degrees, 0..100 percent",
       {"split_toning.shadow_hue", "split_toning.shadow_saturation"}},
      {"--split-balance",
       "PERCENT:-100..100",
       "Favor the tint of the shadows (below 0) or of the highlights (above 0)",
       {"split_toning.balance"}},
      {"--crop",
       "X,Y,W,H",
       "Crop to this rectangle: top left corner and size, as fractions 0..1 of the image",
       {"crop.x", "crop.y", "crop.w", "crop.h"}},
  };
  return kLists;
}

bool IsInList(const std::string& key) {
  return std::any_of(ListOptions().begin(), ListOptions().end(), [&](const ListOption& list) {
    return std::find(list.keys.begin(), list.keys.end(), key) != list.keys.end();
  });
}

api::SettingInfo InfoOf(const std::string& key) {
  return api::DescribeSetting(api::FindSetting(key));
}

Range<float> RangeOf(const api::SettingInfo& info) {
  return {info.minimum, info.maximum};
}

std::string LastWord(const std::string& key) {
  return key.substr(key.find_last_of("_.") + 1);
}

// The unit, else what the number is.
std::string TypeName(const api::SettingInfo& info) {
  std::string name = *info.unit == '\0' ? LastWord(info.key) : info.unit;
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return name;
}

std::string HelpOf(const api::SettingInfo& info) {
  std::ostringstream help;
  help << info.help;
  if (info.neutral_value != 0) help << " (default " << info.neutral_value << ')';
  return help.str();
}

std::string OptionFor(std::string key) {
  std::replace(key.begin(), key.end(), '_', '-');
  return "--" + key;
}

// Points "0,0 0.5,0.6 1,1", or "none" for the identity, which no points give exactly.
std::vector<api::CurvePoint> ReadCurve(const std::string& text) {
  if (text == "none") return {};
  std::vector<api::CurvePoint> curve;
  std::istringstream points(text);
  for (std::string point; points >> point;) {
    const std::vector<float> numbers = ReadNumbers(point, {kCurveLevels, kCurveLevels});
    curve.push_back({numbers[0], numbers[1]});
  }
  if (curve.size() < 2) throw std::invalid_argument("'" + text + "': a curve needs at least two points");
  return curve;
}

// Runs `read`, naming `option` in its errors.
template <typename Reader>
void ReadOption(const std::string& option, const Reader& read) {
  try {
    read();
  } catch (const std::invalid_argument& fault) {
    throw CLI::ValidationError(option, fault.what());
  } catch (const api::Error& fault) {
    throw CLI::ValidationError(option, fault.what());
  }
}

void ReadList(const std::string& text, const std::vector<std::string>& keys, api::Settings& given) {
  std::vector<Range<float>> ranges;
  ranges.reserve(keys.size());
  for (const std::string& key : keys) ranges.push_back(RangeOf(InfoOf(key)));
  const std::vector<float> numbers = ReadNumbers(text, ranges);
  for (std::size_t i = 0; i < keys.size(); ++i) given.SetNumber(keys[i], numbers[i]);
}

bool IsBand(const std::string& name) {
  const std::vector<api::SettingInfo> settings = api::DescribeSettings();
  return std::any_of(settings.begin(), settings.end(), [&](const api::SettingInfo& info) {
    return info.kind == LUMVIK_HOST_BAND && info.key == "hsl." + name + ".hue";
  });
}

void ReadBand(const std::string& text, api::Settings& given) {
  const std::size_t sign = text.find('=');
  const std::string band = text.substr(0, sign);
  const std::string key = "hsl." + band;
  if (sign == std::string::npos || !IsBand(band)) {
    throw std::invalid_argument("'" + text + "' does not start with a band and '='");
  }
  if (given.Has(key + ".hue")) throw std::invalid_argument("band " + band + " is given twice");
  ReadList(text.substr(sign + 1), {key + ".hue", key + ".saturation", key + ".luminance"}, given);
}

void AddNumber(CLI::App& command, const api::SettingInfo& info, api::Settings& given) {
  const auto keep = [&given, key = std::string(info.key)](const float& value) {
    given.SetNumber(key, value);
  };
  command.add_option_function<float>(OptionFor(info.key), keep, HelpOf(info))
      ->type_name(TypeName(info))
      ->check(InRange(RangeOf(info)))
      ->group(info.group);
}

void AddCurve(CLI::App& command, const api::SettingInfo& info, api::Settings& given) {
  const std::string key = info.key;
  const bool is_master = key == kMasterCurve;
  const std::string option = is_master ? "--tone-curve" : "--tone-curve-" + LastWord(key);
  const std::string help =
      is_master ? "Tone curve through the points \"0,0 0.25,0.2 1,1\", in order of X; or none" : info.help;
  const auto keep = [=, &given](const std::string& text) {
    ReadOption(option, [&] { given.SetCurve(key, ReadCurve(text)); });
  };
  command.add_option_function<std::string>(option, keep, help)->type_name("\"X,Y ...\"")->group(info.group);
}

void AddBands(CLI::App& command, api::Settings& given) {
  const auto keep = [&given](const std::vector<std::string>& bands) {
    for (const std::string& band : bands) ReadOption("--hsl", [&] { ReadBand(band, given); });
  };
  command
      .add_option_function<std::vector<std::string>>(
          "--hsl", keep,
          "Adjust one color band: red, orange, yellow, green, aqua, blue, purple or magenta; "
          "-180..180 degrees, -100..100 percent, -100..100 percent. Can be repeated for other bands")
      ->type_name("BAND=HUE,SATURATION,LUMINANCE")
      ->allow_extra_args(false)
      ->group(InfoOf("hsl.red.hue").group);
}

void AddList(CLI::App& command, const ListOption& list, api::Settings& given) {
  const auto keep = [&list, &given](const std::string& text) {
    ReadOption(list.name, [&] { ReadList(text, list.keys, given); });
  };
  command.add_option_function<std::string>(list.name, keep, list.help)
      ->type_name(list.form)
      ->group(InfoOf(list.keys.front()).group);
}

void AddFlag(CLI::App& command, const api::SettingInfo& info, api::Settings& given) {
  const std::string option = OptionFor(info.key);
  const auto keep = [key = std::string(info.key), &given](std::int64_t count) {
    given.SetFlag(key, count > 0);
  };
  command
      .add_flag_function(option + ",!--no-" + option.substr(2), keep, std::string(info.label) + ", or not")
      ->disable_flag_override()
      ->multi_option_policy(CLI::MultiOptionPolicy::Throw)
      ->group(info.group);
}

}  // namespace

void AddAdjustmentOptions(CLI::App& command, api::Settings& given) {
  for (const api::SettingInfo& info : api::DescribeSettings()) {
    if (info.kind == LUMVIK_HOST_FLAG) AddFlag(command, info, given);
    if (info.kind == LUMVIK_HOST_CURVE) AddCurve(command, info, given);
    if (info.kind == LUMVIK_HOST_NUMBER && !IsInList(info.key)) AddNumber(command, info, given);
  }
  AddBands(command, given);
  for (const ListOption& list : ListOptions()) AddList(command, list, given);
}

}  // namespace lumvik
