#include "options/photograph.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <stdexcept>

#include "files/file_paths.h"
#include "files/mark.h"
#include "options/adjustments.h"
#include "options/in_range.h"
#include "options/range.h"
#include "terminal/standard_streams.h"

namespace lumvik {
namespace {

constexpr Range<int> kDecodeQualities = {1, 4};

// Headings in the help.
constexpr char kStandardInput[] = "standard input";
constexpr char kInput[] = "Input";
constexpr char kSettingsFile[] = "Settings file";
constexpr char kAutomatic[] = "Automatic";

// A message of the library about the photograph that was read from standard input.
std::string InTermsOfInput(std::string text) {
  const std::string in_memory = "the photograph in memory";
  const std::size_t at = text.find(in_memory);
  return at == std::string::npos ? text : text.replace(at, in_memory.size(), kStandardInput);
}

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

void RequireWhole(const api::Integrity& integrity, const std::string& shown, const Photograph& photograph,
                  Results& results) {
  if (integrity.is_whole != 0) return;
  const std::string damage = shown + " is damaged: " + integrity.reason;
  if (!photograph.accept_damaged) {
    throw api::Error(LUMVIK_HOST_DAMAGED,
                     damage + "; nothing was written (--accept-damaged develops what can be decoded)");
  }
  results.WarnOfDamage(damage, integrity.reason);
}

api::Photo OpenFile(const Photograph& photograph, const api::OpenOptions& options, Results& results) {
  // Checking takes less time than decoding, and also explains why a file cannot be decoded at all.
  RequireWhole(api::CheckFile(photograph.input), "'" + photograph.input + "'", photograph, results);
  results.NoteStep("checked");
  api::Photo photo(photograph.input, options);
  results.NoteStep("decoded");
  return photo;
}

api::Photo OpenInput(const Photograph& photograph, const api::OpenOptions& options, Results& results) {
  const std::string bytes = ReadToEnd(stdin);
  if (bytes.empty()) throw std::runtime_error("standard input is empty");
  results.NoteStep("read");
  try {
    api::Photo photo(bytes.data(), bytes.size(), options);
    results.NoteStep("decoded");
    RequireWhole(photo.CheckIntegrity(), kStandardInput, photograph, results);
    results.NoteStep("checked");
    return photo;
  } catch (const api::Error& error) {
    throw api::Error(error.status(), InTermsOfInput(error.what()));
  }
}

void NoteColors(const api::PhotoInfo& info, bool keep_colors, Results& results) {
  const std::string profile = info.profile;
  if (info.format == LUMVIK_HOST_FORMAT_RAW) return;
  if (keep_colors) return results.Note("colors kept as they are");
  if (info.is_converted != 0) return results.Note("colors converted from '" + profile + "' to sRGB");
  results.Note(profile.empty() ? "no color profile" : "color profile '" + profile + "'");
}

}  // namespace

void AddInputOptions(CLI::App& command, Photograph& photograph) {
  command
      .add_option("IN", photograph.input,
                  "The photograph: camera RAW, JPEG, PNG, TIFF, BMP or WebP; - for standard input")
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
  command
      .add_flag("--accept-damaged", photograph.accept_damaged,
                "Develop what can be decoded of a damaged photograph")
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
  return photograph.no_sidecar || IsStandardStream(input) ? std::nullopt
                                                          : api::FindSidecar(input, kSettingsSidecar);
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

api::Settings ReadSettings(const Photograph& photograph, Results& results) {
  const std::optional<std::string> sidecar = SidecarOf(photograph, photograph.input);
  if (sidecar) results.ReadSidecar(*sidecar);
  if (photograph.settings) results.ReadSettings(*photograph.settings);
  return GivenSettings(photograph, sidecar);
}

void RequireInput(const Photograph& photograph) {
  if (IsStandardStream(photograph.input)) {
    RequireRedirectedInput();
  } else {
    RequireReadable(photograph.input);
  }
}

void CheckUndecoded(const Photograph& photograph, bool needs_subject) {
  if (IsStandardStream(photograph.input)) return;
  const lumvik_host_format format = api::Identify(photograph.input);
  api::ReadSize(photograph.input);
  if (!needs_subject || format == LUMVIK_HOST_FORMAT_RAW) return;
  throw api::Error(LUMVIK_HOST_UNSUPPORTED,
                   "cannot find the subject of '" + photograph.input + "', which is not a RAW file");
}

api::Photo Open(const Photograph& photograph, Results& results, bool keep_colors) {
  api::OpenOptions options;
  options.quality = photograph.decode_quality;
  options.keep_colors = keep_colors ? 1 : 0;
  api::Photo photo = IsStandardStream(photograph.input) ? OpenInput(photograph, options, results)
                                                        : OpenFile(photograph, options, results);
  NoteColors(photo.Info(), keep_colors, results);
  return photo;
}

bool IsAutomatic(const Photograph& photograph) {
  return WhatToSuggest(photograph) != 0;
}

api::Settings Completed(const api::Settings& given) {
  api::Settings settings = NeutralSettings();
  settings.Merge(given);
  return settings;
}

api::Settings Adjust(const Photograph& photograph, const api::Settings& given, api::Photo& photo) {
  api::Settings settings = NeutralSettings();
  if (IsAutomatic(photograph)) settings.Merge(photo.Suggest(WhatToSuggest(photograph)));
  settings.Merge(given);
  photo.SetSettings(settings);
  return settings;
}

std::string MarkOf(const Photograph& photograph, std::uint64_t settings_digest) {
  constexpr std::uint64_t kUnknown = 0;
  const bool is_file = !IsStandardStream(photograph.input);
  return TextOf({is_file ? api::Fingerprint(photograph.input) : kUnknown, settings_digest});
}

}  // namespace lumvik
