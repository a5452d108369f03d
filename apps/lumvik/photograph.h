// The photograph of a command, and how it is to be developed.
#ifndef LUMVIK_APPS_PHOTOGRAPH_H_
#define LUMVIK_APPS_PHOTOGRAPH_H_

#include <CLI/App.hpp>
#include <optional>
#include <string>

#include "engine.h"
#include "settings.h"

namespace lumvik {

// What the command line says of it.
struct Photograph {
  std::string input;
  int decode_quality = 1;
  Settings given;                       // by options of their own
  std::optional<std::string> settings;  // the file to read others from
  bool no_sidecar = false;
  bool auto_enhance = false;
  bool auto_crop = false;
  bool auto_straighten = false;
};

// Add the options; `photograph` must outlive the command. The first: the file and its decoding; the second:
// the decoding alone.
void AddInputOptions(CLI::App& command, Photograph& photograph);
void AddDecodingOption(CLI::App& command, Photograph& photograph);
void AddDevelopOptions(CLI::App& command, Photograph& photograph);

// The settings file beside the photograph, when there is one and it is to be used.
std::optional<std::string> SidecarOf(const Photograph& photograph);

// What is given: an option goes before the settings file, and that before the sidecar. Throws
// std::runtime_error, as all below.
Settings GivenSettings(const Photograph& photograph, const std::optional<std::string>& sidecar);

void Load(const Photograph& photograph, Engine& engine);

// Sets the adjustments of the photograph just loaded: what is given goes before what the engine suggests,
// where it is asked to, and that before the defaults. Returns a value for every setting.
Settings Adjust(const Photograph& photograph, Settings given, Engine& engine);

}  // namespace lumvik

#endif  // LUMVIK_APPS_PHOTOGRAPH_H_
