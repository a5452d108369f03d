// The photograph of a command and the settings to develop it with.
#ifndef LUMVIK_APPS_OPTIONS_PHOTOGRAPH_H_
#define LUMVIK_APPS_OPTIONS_PHOTOGRAPH_H_

#include <CLI/App.hpp>
#include <cstdint>
#include <optional>
#include <string>

#include "lumvik_host.hpp"
#include "terminal/results.h"

namespace lumvik {

// The extension of settings files next to photographs.
inline constexpr char kSettingsSidecar[] = ".lumvik.json";

// As given on the command line.
struct Photograph {
  std::string input;  // "-" is standard input
  int decode_quality = 1;
  bool accept_damaged = false;
  api::Settings given;                  // by single options
  std::optional<std::string> settings;  // settings file
  bool no_sidecar = false;
  bool auto_enhance = false;
  bool auto_crop = false;
  bool auto_straighten = false;
};

// Add options to `command`, which `photograph` must outlive: the input file and its decoding, the decoding
// alone, and the settings.
void AddInputOptions(CLI::App& command, Photograph& photograph);
void AddDecodingOption(CLI::App& command, Photograph& photograph);
void AddDevelopOptions(CLI::App& command, Photograph& photograph);

// The settings file next to the file `input`, unless there is none or it is disabled.
std::optional<std::string> SidecarOf(const Photograph& photograph, const std::string& input);

// The settings that were given. Options override the settings file, which overrides the sidecar. This and the
// functions below throw std::runtime_error.
api::Settings GivenSettings(const Photograph& photograph, const std::optional<std::string>& sidecar);

// The same for the photograph itself, with its sidecar.
api::Settings ReadSettings(const Photograph& photograph, Results& results);

// Fails before any work is done if the photograph cannot be read.
void RequireInput(const Photograph& photograph);

// What can be known without decoding the photograph: that it is one, and for `needs_subject` a RAW file.
// Standard input is left alone.
void CheckUndecoded(const Photograph& photograph, bool needs_subject);

// A damaged photograph gives LUMVIK_HOST_DAMAGED, unless it is accepted: then a warning.
api::Photo Open(const Photograph& photograph, Results& results, bool keep_colors = false);

bool IsAutomatic(const Photograph& photograph);

// A value for every setting: those not given are neutral.
api::Settings Completed(const api::Settings& given);

// Sets the settings of the photo: those given override suggestions, where requested, and these override the
// neutral ones. Returns a value for every setting.
api::Settings Adjust(const Photograph& photograph, const api::Settings& given, api::Photo& photo);

// The text of the mark for an image made of the photograph; see files/mark.h.
std::string MarkOf(const Photograph& photograph, std::uint64_t settings_digest = 0);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_PHOTOGRAPH_H_
