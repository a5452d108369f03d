#include "edits.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace lumvik::checksums {
namespace {

// The members of a settings file.
struct EditText {
  const char* name;
  const char* members;
};

constexpr EditText kSingleEdits[] = {
    {"exposure_up", R"("exposure": 0.7)"},
    {"exposure_down", R"("exposure": -1.3)"},
    {"brightness", R"("brightness": 15)"},
    {"contrast", R"("contrast": 20)"},
    {"contrast_down", R"("contrast": -35)"},
    {"highlights", R"("highlights": -30)"},
    {"shadows", R"("shadows": 25)"},
    {"whites", R"("whites": -10)"},
    {"blacks", R"("blacks": 10)"},
    {"master_curve", R"("tone_curves": {"master": [[0, 0], [0.25, 0.2], [0.5, 0.5], [0.75, 0.8], [1, 1]]})"},
    {"channel_curves", R"("tone_curves": {"red": [[0, 0.05], [0.5, 0.55], [1, 0.95]],
                                          "green": [[0, 0], [1, 1]], "blue": [[0, 0.1], [1, 0.9]]})"},
    {"warm", R"("temperature": 7500, "tint": 10)"},
    {"cool", R"("temperature": 4800, "tint": -8)"},
    {"saturation", R"("saturation": 30)"},
    {"gray", R"("saturation": -100)"},
    {"vibrance", R"("vibrance": 40)"},
    {"split_toning", R"("split_toning": {"highlight_hue": 40, "highlight_saturation": 20, "shadow_hue": 220,
                                         "shadow_saturation": 14, "balance": 10})"},
    {"hsl", R"("hsl": {"red": {"hue": 27, "saturation": -15, "luminance": 9},
                       "orange": {"hue": 21.6, "saturation": -12, "luminance": 7.2},
                       "yellow": {"hue": 16.2, "saturation": -9, "luminance": 5.4},
                       "green": {"hue": 10.8, "saturation": 6, "luminance": 3.6},
                       "aqua": {"hue": 5.4, "saturation": 3, "luminance": 1.8},
                       "blue": {"hue": 12, "saturation": 30, "luminance": -10},
                       "purple": {"hue": -5.4, "saturation": 3, "luminance": -1.8},
                       "magenta": {"hue": -10.8, "saturation": 6, "luminance": -3.6}})"},
    {"clarity", R"("clarity": 30)"},
    {"clarity_down", R"("clarity": -40)"},
    {"texture", R"("texture": 25)"},
    {"dehaze", R"("dehaze": 35)"},
    {"luminance_noise_reduction", R"("nr_luminance": 45)"},
    {"color_noise_reduction", R"("nr_color": 60)"},
    {"sharpening", R"("sharpening_amount": 60)"},
    {"fine_sharpening", R"("sharpening_amount": 90, "sharpening_radius": 0.6, "sharpening_threshold": 300)"},
    {"wide_sharpening", R"("sharpening_amount": 40, "sharpening_radius": 30)"},
    {"distortion", R"("distortion": 15)"},
    {"color_fringes", R"("ca_correction": 50)"},
    {"lens_vignetting", R"("lens_vignette": 45)"},
    {"defringe", R"("defringe": 70)"},
    {"rotation", R"("rotation": 2.3)"},
    {"quarter_turn", R"("rotation": 90)"},
    {"perspective", R"("perspective_h": 12, "perspective_v": -8)"},
    {"crop", R"("crop": {"x": 0.1, "y": 0.15, "w": 0.7, "h": 0.65})"},
    {"flip_h", R"("flip_h": true)"},
    {"flip_v", R"("flip_v": true)"},
    {"vignette", R"("vignette_amount": 30, "vignette_midpoint": 40, "vignette_roundness": -30)"},
    {"round_vignette", R"("vignette_amount": -25, "vignette_roundness": 60)"},
    {"grain", R"("grain_amount": 30)"},
    {"coarse_grain", R"("grain_amount": 20, "grain_size": 80)"},
};

constexpr EditText kTypicalEdit = {
    "typical", R"("exposure": 0.5, "contrast": 20, "highlights": -30, "shadows": 25, "vibrance": 16,
                  "saturation": 5, "clarity": 15, "sharpening_amount": 40)"};

api::Settings SettingsOf(const EditText& edit) {
  return api::Settings::FromJson(std::string(R"({"lumvik": 2, )") + edit.members + "}");
}

Edit Made(const EditText& edit) {
  return {edit.name, SettingsOf(edit)};
}

}  // namespace

std::vector<Edit> SingleEdits() {
  std::vector<Edit> edits;
  for (const EditText& edit : kSingleEdits) edits.push_back(Made(edit));
  for (const api::SettingInfo& setting : api::DescribeSettings()) {
    const auto has = [&](const Edit& edit) { return edit.settings.Has(setting.key); };
    if (std::none_of(edits.begin(), edits.end(), has)) {
      throw std::runtime_error(std::string("no edit has the setting ") + setting.key);
    }
  }
  return edits;
}

Edit TypicalEdit() {
  return Made(kTypicalEdit);
}

Edit FullEdit() {
  Edit full{"full", {}};
  for (const EditText& edit : kSingleEdits) full.settings.Merge(SettingsOf(edit));
  full.settings.SetNumber("rotation", 1.5F);
  full.settings.SetNumber("saturation", 5);
  return full;
}

Edit FullEditWithoutDehaze() {
  Edit full = FullEdit();
  full.settings.Remove("dehaze");
  return {"full_without_dehaze", std::move(full.settings)};
}

}  // namespace lumvik::checksums
