#include "options/adjustments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <stdexcept>

#include "develop/single_settings.h"
#include "options/in_range.h"
#include "options/number_list.h"

namespace lumvik {
namespace {

std::string OptionFor(std::string key) {
  std::replace(key.begin(), key.end(), '_', '-');
  return "--" + key;
}

// Points "0,0 0.5,0.6 1,1", or "none" for the identity, which no points give exactly.
ToneCurve ReadCurve(const std::string& text) {
  if (text == "none") return {};
  ToneCurve curve;
  std::istringstream points(text);
  for (std::string point; points >> point;) {
    const std::vector<float> numbers = ReadNumbers(point, {kCurveLevels, kCurveLevels});
    curve.push_back({numbers[0], numbers[1]});
  }
  const std::string fault = CurveFault(curve);
  if (!fault.empty()) throw std::invalid_argument("'" + text + "': " + fault);
  return curve;
}

// Runs `read`, naming `option` in its errors.
template <typename Reader>
void ReadOption(const std::string& option, const Reader& read) {
  try {
    read();
  } catch (const std::invalid_argument& fault) {
    throw CLI::ValidationError(option, fault.what());
  }
}

void ReadList(const std::string& text, const std::vector<std::string>& keys, Settings& given) {
  std::vector<Range<float>> ranges;
  ranges.reserve(keys.size());
  for (const std::string& key : keys) ranges.push_back(FindSettingRule(key)->range);
  const std::vector<float> numbers = ReadNumbers(text, ranges);
  for (std::size_t i = 0; i < keys.size(); ++i) given[keys[i]] = numbers[i];
}

void ReadBand(const std::string& text, Settings& given) {
  const std::size_t sign = text.find('=');
  const std::string band = text.substr(0, sign);
  const std::string key = "hsl." + band;
  if (sign == std::string::npos || FindSettingRule(key + ".hue") == nullptr) {
    throw std::invalid_argument("'" + text + "' does not start with a band and '='");
  }
  if (given.count(key + ".hue") != 0) throw std::invalid_argument("band " + band + " is given twice");
  ReadList(text.substr(sign + 1), {key + ".hue", key + ".saturation", key + ".luminance"}, given);
}

void AddSingle(CLI::App& command, const SingleSetting& single, Settings& given) {
  const auto keep = [&given, key = single.key](const float& value) { given[key] = value; };
  command.add_option_function<float>(OptionFor(single.key), keep, single.help)
      ->type_name(single.unit)
      ->check(InRange(single.range))
      ->group(single.group);
}

void AddCurve(CLI::App& command, const std::string& name, Settings& given) {
  const bool master = name == kCurveNames[LUMVIK_CURVE_MASTER];
  const std::string option = master ? "--tone-curve" : "--tone-curve-" + name;
  const std::string help = master
                               ? "Tone curve through the points \"0,0 0.25,0.2 1,1\", in order of X; or none"
                               : "Tone curve of the " + name + " channel";
  const auto keep = [=, &given](const std::string& text) {
    ReadOption(option, [&] { given["tone_curves." + name] = ReadCurve(text); });
  };
  command.add_option_function<std::string>(option, keep, help)->type_name("\"X,Y ...\"")->group(kTone);
}

void AddBands(CLI::App& command, Settings& given) {
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
      ->group(kColor);
}

// An option that sets several numbers.
struct ListOption {
  const char* group;
  const char* name;
  const char* form;
  const char* help;
  std::vector<std::string> keys;
};

void AddList(CLI::App& command, const ListOption& list, Settings& given) {
  const auto keep = [name = list.name, keys = list.keys, &given](const std::string& text) {
    ReadOption(name, [&] { ReadList(text, keys, given); });
  };
  command.add_option_function<std::string>(list.name, keep, list.help)
      ->type_name(list.form)
      ->group(list.group);
}

void AddFlip(CLI::App& command, const std::string& key, const std::string& help, Settings& given) {
  const std::string option = OptionFor(key);
  const auto keep = [key, &given](std::int64_t count) { given[key] = count > 0; };
  command.add_flag_function(option + ",!--no-" + option.substr(2), keep, help)
      ->disable_flag_override()
      ->multi_option_policy(CLI::MultiOptionPolicy::Throw)
      ->group(kGeometry);
}

}  // namespace

void AddAdjustmentOptions(CLI::App& command, Settings& given) {
  const ListOption lists[] = {
      {kColor,
       "--split-highlights",
       "HUE,SATURATION",
       "Tint the highlights: 0..360 degrees, 0..100 percent",
       {"split_toning.highlight_hue", "split_toning.highlight_saturation"}},
      {kColor,
       "--split-shadows",
       "HUE,SATURATION",
       "Tint the shadows: 0..360 degrees, 0..100 percent",
       {"split_toning.shadow_hue", "split_toning.shadow_saturation"}},
      {kColor,
       "--split-balance",
       "PERCENT:-100..100",
       "Favor the tint of the shadows (below 0) or of the highlights (above 0)",
       {"split_toning.balance"}},
      {kGeometry,
       "--crop",
       "X,Y,W,H",
       "Crop to this rectangle: top left corner and size, as fractions 0..1 of the image",
       {"crop.x", "crop.y", "crop.w", "crop.h"}},
  };
  for (const SingleSetting& single : kSingleSettings) AddSingle(command, single, given);
  for (const char* name : kCurveNames) AddCurve(command, name, given);
  AddBands(command, given);
  for (const ListOption& list : lists) AddList(command, list, given);
  AddFlip(command, "flip_h", "Flip horizontally, or not", given);
  AddFlip(command, "flip_v", "Flip vertically, or not", given);
}

}  // namespace lumvik
