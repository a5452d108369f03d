#include "settings/setting_table.h"

#include <algorithm>

namespace lumvik::host {
namespace {

// Groups.
constexpr char kTone[] = "Tone";
constexpr char kColor[] = "Color";
constexpr char kDetail[] = "Detail";
constexpr char kLens[] = "Lens";
constexpr char kGeometry[] = "Geometry";
constexpr char kEffects[] = "Effects";

constexpr Range kFull = {-100, 100};
constexpr Range kPositive = {0, 100};
constexpr Range kHueShift = {-180, 180};
constexpr Range kHue = {0, 360};
constexpr Range kFraction = {0, 1};
constexpr Range kFlag = {0, 1};

constexpr float kNeutralTemperature = 6500;
constexpr float kEngineTemperature = 5500;

// clang-format off
std::vector<SettingRule> RulesOfAllButBands() {
  return {
      {kTone, "exposure", "Exposure", lumvik_set_exposure, 0, {-10, 10}, "stops", "Exposure compensation"},
      {kTone, "brightness", "Brightness", lumvik_set_brightness, 0, kFull, "percent",
       "Darken or brighten the midtones"},
      {kTone, "contrast", "Contrast", lumvik_set_contrast, 0, kFull, "percent",
       "Decrease or increase contrast around middle gray"},
      {kTone, "highlights", "Highlights", lumvik_set_highlights, 0, kFull, "percent",
       "Darken or brighten the highlights"},
      {kTone, "shadows", "Shadows", lumvik_set_shadows, 0, kFull, "percent", "Darken or lift the shadows"},
      {kTone, "whites", "Whites", lumvik_set_whites, 0, kFull, "percent",
       "Move the white point: above 0 darkens, below 0 brightens and clips"},
      {kTone, "blacks", "Blacks", lumvik_set_blacks, 0, kFull, "percent",
       "Move the black point: above 0 darkens and clips, below 0 lifts"},
      {kTone, "tone_curves.master", "Tone curve", CurveOf{LUMVIK_CURVE_MASTER}, 0, {}, "",
       "Tone curve of all channels"},
      {kTone, "tone_curves.red", "Red tone curve", CurveOf{LUMVIK_CURVE_RED}, 0, {}, "",
       "Tone curve of the red channel"},
      {kTone, "tone_curves.green", "Green tone curve", CurveOf{LUMVIK_CURVE_GREEN}, 0, {}, "",
       "Tone curve of the green channel"},
      {kTone, "tone_curves.blue", "Blue tone curve", CurveOf{LUMVIK_CURVE_BLUE}, 0, {}, "",
       "Tone curve of the blue channel"},
      {kColor, "temperature", "Temperature", lumvik_set_temperature, kNeutralTemperature, {1667, 25000},
       "kelvin", "Color temperature; higher is warmer, 6500 with tint 0 keeps the colors",
       kEngineTemperature},
      {kColor, "tint", "Tint", lumvik_set_tint, 0, {-150, 150}, "",
       "Shift toward green (below 0) or magenta (above 0)"},
      {kColor, "saturation", "Saturation", lumvik_set_saturation, 0, kFull, "percent",
       "Decrease or increase saturation; -100 is grayscale"},
      {kColor, "vibrance", "Vibrance", lumvik_set_vibrance, 0, kFull, "percent",
       "Decrease or increase the saturation of muted colors"},
      {kColor, "split_toning.highlight_hue", "Highlight tint hue", Jointly{LUMVIK_HOST_ZONE}, 0, kHue,
       "degrees", "Hue of the tint of the highlights"},
      {kColor, "split_toning.highlight_saturation", "Highlight tint saturation", Jointly{LUMVIK_HOST_ZONE}, 0,
       kPositive, "percent", "Strength of the tint of the highlights"},
      {kColor, "split_toning.shadow_hue", "Shadow tint hue", Jointly{LUMVIK_HOST_ZONE}, 0, kHue, "degrees",
       "Hue of the tint of the shadows"},
      {kColor, "split_toning.shadow_saturation", "Shadow tint saturation", Jointly{LUMVIK_HOST_ZONE}, 0,
       kPositive, "percent", "Strength of the tint of the shadows"},
      {kColor, "split_toning.balance", "Tint balance", Jointly{LUMVIK_HOST_NUMBER}, 0, kFull,
       "percent", "Favor the tint of the shadows (below 0) or of the highlights (above 0)"},
      {kDetail, "clarity", "Clarity", lumvik_set_clarity, 0, kFull, "percent",
       "Soften or enhance local contrast at a radius of about 20 pixels"},
      {kDetail, "texture", "Texture", lumvik_set_texture, 0, kFull, "percent",
       "Soften or enhance fine detail at a radius of about 3 pixels"},
      {kDetail, "dehaze", "Dehaze", lumvik_set_dehaze, 0, kPositive, "percent", "Remove haze"},
      {kDetail, "nr_luminance", "Luminance noise reduction", lumvik_set_nr_luminance, 0, kPositive, "percent",
       "Reduce luminance noise"},
      {kDetail, "nr_color", "Color noise reduction", lumvik_set_nr_color, 0, kPositive, "percent",
       "Reduce color noise"},
      {kDetail, "sharpening_amount", "Sharpening", lumvik_set_sharpening_amount, 0, {0, 150}, "",
       "Amount of sharpening"},
      // The engine does not support a radius of 0.
      {kDetail, "sharpening_radius", "Sharpening radius", lumvik_set_sharpening_radius, 1, {0.01F, 100},
       "pixels", "Radius of sharpening"},
      {kDetail, "sharpening_threshold", "Sharpening threshold", lumvik_set_sharpening_threshold, 0,
       {0, 65535}, "", "Leave differences up to this level, of 65535, unsharpened"},
      {kLens, "distortion", "Distortion", lumvik_set_distortion, 0, kFull, "percent",
       "Correct pincushion (below 0) or barrel distortion (above 0)"},
      {kLens, "ca_correction", "Chromatic aberration", lumvik_set_ca_correction, 0, kPositive, "percent",
       "Correct lateral chromatic aberration of red and blue"},
      {kLens, "lens_vignette", "Lens vignetting", lumvik_set_lens_vignette, 0, kPositive, "percent",
       "Correct lens vignetting by brightening the corners"},
      {kLens, "defringe", "Defringe", lumvik_set_defringe, 0, kPositive, "percent",
       "Desaturate purple and green fringes"},
      {kGeometry, "rotation", "Rotation", lumvik_set_rotation, 0, {-180, 180}, "degrees",
       "Rotate clockwise (below 0) or counterclockwise (above 0)"},
      {kGeometry, "perspective_h", "Keystone", lumvik_set_perspective_h, 0, kFull, "percent",
       "Narrow the bottom (below 0) or the top (above 0)"},
      {kGeometry, "perspective_v", "Height", lumvik_set_perspective_v, 0, kFull, "percent",
       "Stretch (below 0) or compress (above 0) the height"},
      {kGeometry, "crop.x", "Crop left", Jointly{LUMVIK_HOST_NUMBER}, 0, kFraction, "fraction",
       "Left edge of the crop, as a fraction of the width"},
      {kGeometry, "crop.y", "Crop top", Jointly{LUMVIK_HOST_NUMBER}, 0, kFraction, "fraction",
       "Top edge of the crop, as a fraction of the height"},
      {kGeometry, "crop.w", "Crop width", Jointly{LUMVIK_HOST_NUMBER}, 0, kFraction, "fraction",
       "Width of the crop, as a fraction of the width; 0 for no crop"},
      {kGeometry, "crop.h", "Crop height", Jointly{LUMVIK_HOST_NUMBER}, 0, kFraction, "fraction",
       "Height of the crop, as a fraction of the height; 0 for no crop"},
      {kGeometry, "flip_h", "Flip horizontally", lumvik_set_flip_h, 0, kFlag, "",
       "Mirror the image left to right"},
      {kGeometry, "flip_v", "Flip vertically", lumvik_set_flip_v, 0, kFlag, "",
       "Mirror the image top to bottom"},
      {kEffects, "vignette_amount", "Vignette", lumvik_set_vignette_amount, 0, kFull, "percent",
       "Fade the edges to white, whatever the sign"},
      {kEffects, "vignette_midpoint", "Vignette midpoint", lumvik_set_vignette_midpoint, 50, kPositive,
       "percent", "Where the vignette starts, from the center to the edge"},
      {kEffects, "vignette_roundness", "Vignette roundness", lumvik_set_vignette_roundness, 0, kFull,
       "percent", "Shape of the vignette: a rectangle at -100, an ellipse at 0 and above"},
      {kEffects, "grain_amount", "Grain", lumvik_set_grain_amount, 0, kPositive, "percent",
       "Add film grain; it differs from run to run"},
      {kEffects, "grain_size", "Grain size", lumvik_set_grain_size, 25, kPositive, "percent",
       "Coarseness of the grain"},
  };
}
// clang-format on

// The settings that each of the eight bands has, below "hsl.red".
struct BandRow {
  const char* key = "";
  Range range;
  const char* unit = "";
  const char* help = "";
};
constexpr BandRow kBandRows[] = {
    {"hue", kHueShift, "degrees", "Shift the hue of the colors in this band"},
    {"saturation", kFull, "percent", "Decrease or increase the saturation of the colors in this band"},
    {"luminance", kFull, "percent", "Darken or brighten the colors in this band"},
};

std::vector<SettingRule> RulesOfBands() {
  std::vector<SettingRule> rules;
  for (const std::string name : kBandNames) {
    for (const BandRow& row : kBandRows) {
      rules.push_back({kColor, "hsl." + name + '.' + row.key, Capitalized(name) + ' ' + row.key,
                       Jointly{LUMVIK_HOST_BAND}, 0, row.range, row.unit, row.help});
    }
  }
  return rules;
}

std::vector<SettingRule> MakeRules() {
  std::vector<SettingRule> rules = RulesOfAllButBands();
  const std::vector<SettingRule> bands = RulesOfBands();
  const auto last_color = std::find_if(rules.rbegin(), rules.rend(),
                                       [](const SettingRule& rule) { return rule.group == kColor; });
  rules.insert(last_color.base(), bands.begin(), bands.end());
  return rules;
}

}  // namespace

lumvik_host_setting_kind SettingRule::Kind() const {
  if (std::holds_alternative<FlagSetter>(setter)) return LUMVIK_HOST_FLAG;
  if (std::holds_alternative<CurveOf>(setter)) return LUMVIK_HOST_CURVE;
  const auto* jointly = std::get_if<Jointly>(&setter);
  return jointly == nullptr ? LUMVIK_HOST_NUMBER : jointly->kind;
}

SettingValue SettingRule::NeutralValue() const {
  if (std::holds_alternative<FlagSetter>(setter)) return false;
  if (std::holds_alternative<CurveOf>(setter)) return ToneCurve();
  return neutral;
}

SettingValue SettingRule::EngineValue() const {
  return engine ? *engine : NeutralValue();
}

const std::vector<SettingRule>& SettingRules() {
  // Never destroyed: other threads may run until the process ends.
  static const auto* const kRules = new std::vector<SettingRule>(MakeRules());
  return *kRules;
}

const SettingRule* FindSettingRule(const std::string& key) {
  const auto rule = std::find_if(SettingRules().begin(), SettingRules().end(),
                                 [&](const SettingRule& candidate) { return candidate.key == key; });
  return rule == SettingRules().end() ? nullptr : &*rule;
}

std::string Capitalized(std::string name) {
  name[0] = static_cast<char>(name[0] - 'a' + 'A');
  return name;
}

}  // namespace lumvik::host
