// The photograph of a command and the settings to develop it with.
#ifndef LUMVIK_APPS_OPTIONS_PHOTOGRAPH_H_
#define LUMVIK_APPS_OPTIONS_PHOTOGRAPH_H_

#include <CLI/App.hpp>
#include <optional>
#include <string>

#include "lumvik_host.hpp"

namespace lumvik {

// The extension of settings files next to photographs.
inline constexpr char kSettingsSidecar[] = ".lumvik.json";

// As given on the command line.
struct Photograph {
  std::string input;
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

api::Photo Open(const Photograph& photograph);

// Sets the settings of the photo: those given override suggestions, where requested, and these override the
// neutral ones. Returns a value for every setting.
api::Settings Adjust(const Photograph& photograph, const api::Settings& given, api::Photo& photo);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_PHOTOGRAPH_H_
