#include "options/photograph.h"

#include <CLI/CLI.hpp>

#include "develop/settings_file.h"
#include "develop/sidecar.h"
#include "develop/suggestions.h"
#include "files/file_paths.h"
#include "lumvik.h"
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

std::optional<std::string> SidecarOf(const Photograph& photograph) {
  return photograph.no_sidecar ? std::nullopt : FindSidecar(photograph.input, kSettingsSidecar);
}

Settings GivenSettings(const Photograph& photograph, const std::optional<std::string>& sidecar) {
  Settings settings = photograph.given;
  for (const auto& file : {photograph.settings, sidecar}) {
    if (!file) continue;
    RequireReadable(*file);
    settings.merge(ReadSettings(*file));
  }
  return settings;
}

void Load(const Photograph& photograph, Engine& engine) {
  engine.Run("cannot read '" + photograph.input + "'", [&](EngineContext* context) {
    return lumvik_load_arw(context, photograph.input.c_str(), photograph.decode_quality);
  });
}

Settings Adjust(const Photograph& photograph, Settings given, Engine& engine) {
  if (photograph.auto_enhance) given.merge(SuggestedEnhancement(engine));
  if (photograph.auto_crop) given.merge(SuggestedCrop(engine));
  if (photograph.auto_straighten) given.merge(SuggestedRotation(engine));
  given.merge(DefaultSettings());
  Apply(given, engine.Context());
  return given;
}

}  // namespace lumvik
