#include "options/photograph.h"

#include <CLI/CLI.hpp>
#include <cstdint>

#include "files/file_paths.h"
#include "options/adjustments.h"
#include "options/in_range.h"
#include "options/range.h"

namespace lumvik {
namespace {

constexpr Range<int> kDecodeQualities = {1, 4};

// Headings in the help.
constexpr char kInput[] = "Input";
constexpr char kSettingsFile[] = "Settings file";
constexpr char kAutomatic[] = "Automatic";

std::uint32_t WhatToSuggest(const Photograph& photograph) {
  std::uint32_t what = 0;
  if (photograph.auto_enhance) what |= LUMVIK_HOST_SUGGEST_ENHANCEMENT;
  if (photograph.auto_crop) what |= LUMVIK_HOST_SUGGEST_CROP;
  if (photograph.auto_straighten) what |= LUMVIK_HOST_SUGGEST_ROTATION;
  return what;
}

// A value for every setting.
api::Settings NeutralSettings() {
  api::Settings settings;
  settings.SetEngineValues();
  for (const api::SettingInfo& info : api::DescribeSettings()) {
    if (info.engine_value != info.neutral_value) settings.SetNumber(info.key, info.neutral_value);
  }
  return settings;
}

}  // namespace

void AddInputOptions(CLI::App& command, Photograph& photograph) {
  command.add_option("IN", photograph.input, "The photograph: camera RAW, JPEG, PNG, TIFF, BMP or WebP")
      ->required()
      ->type_name("");
  AddDecodingOption(command, photograph);
}

void AddDecodingOption(CLI::App& command, Photograph& photograph) {
  command
      .add_option("--quality", photograph.decode_quality,
                  "Decoding of a camera RAW file: 1 full size, 2 and 3 half size, 4 quarter-size proxy "
                  "(default 1)")
      ->type_name("LEVEL")
      ->check(InRange(kDecodeQualities))
      ->group(kInput);
}

void AddDevelopOptions(CLI::App& command, Photograph& photograph) {
  AddAdjustmentOptions(command, photograph.given);
  command.add_option("--settings", photograph.settings, "Read settings from this file; options override it")
      ->type_name("FILE")
      ->group(kSettingsFile);
  command
      .add_flag("--no-sidecar", photograph.no_sidecar,
                "Ignore the settings in IN.lumvik.json next to the photograph")
      ->group(kSettingsFile);
  command
      .add_flag("--auto", photograph.auto_enhance,
                "Choose tone, color and detail automatically where nothing is given")
      ->group(kAutomatic);
  command.add_flag("--auto-crop", photograph.auto_crop, "Crop to the most interesting 3:2 part")
      ->group(kAutomatic);
  command.add_flag("--auto-straighten", photograph.auto_straighten, "Level near-horizontal lines")
      ->group(kAutomatic);
}

std::optional<std::string> SidecarOf(const Photograph& photograph, const std::string& input) {
  return photograph.no_sidecar ? std::nullopt : api::FindSidecar(input, kSettingsSidecar);
}

api::Settings GivenSettings(const Photograph& photograph, const std::optional<std::string>& sidecar) {
  api::Settings settings;
  for (const auto& file : {sidecar, photograph.settings}) {
    if (!file) continue;
    RequireReadable(*file);
    settings.Merge(api::Settings::Read(*file));
  }
  settings.Merge(photograph.given);
  return settings;
}

api::Photo Open(const Photograph& photograph) {
  api::OpenOptions options;
  options.quality = photograph.decode_quality;
  options.keep_colors = 1;
  return api::Photo(photograph.input, options);
}

api::Settings Adjust(const Photograph& photograph, const api::Settings& given, api::Photo& photo) {
  api::Settings settings = NeutralSettings();
  const std::uint32_t what = WhatToSuggest(photograph);
  if (what != 0) settings.Merge(photo.Suggest(what));
  settings.Merge(given);
  photo.SetSettings(settings);
  return settings;
}

}  // namespace lumvik
