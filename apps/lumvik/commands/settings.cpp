#include "commands/settings.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "develop/camera_raw_settings.h"
#include "develop/settings_file.h"
#include "develop/settings_import.h"
#include "develop/settings_json.h"
#include "files/file_paths.h"
#include "options/settings_output.h"

namespace lumvik {
namespace {

struct ImportOptions {
  std::string input;
  std::optional<std::string> output;
  bool json = false;
};

const char* NameOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::kTaken:
      return "taken";
    case Outcome::kScaled:
      return "scaled";
    default:
      return "ignored";
  }
}

// Lines such as "scaled   Whites2012 +20: whites (times -1)". Control characters in values become spaces.
void PrintList(const SettingsImport& import) {
  for (const ImportedProperty& property : import.properties) {
    std::string value = property.value;
    std::replace_if(
        value.begin(), value.end(), [](unsigned char c) { return c < ' '; }, ' ');
    std::cerr << std::left << std::setw(9) << NameOf(property.outcome) << property.name << ' ' << value;
    if (!property.key.empty()) std::cerr << ": " << property.key;
    if (!property.note.empty()) std::cerr << " (" << property.note << ')';
    std::cerr << '\n';
  }
}

void PrintJson(const std::string& file, const SettingsImport& import) {
  Json root = {{"file", file}, {"settings", Json::parse(SettingsText(import.settings))}};
  Json& properties = root["properties"] = Json::array();
  for (const ImportedProperty& property : import.properties) {
    properties.push_back({{"name", property.name},
                          {"value", property.value},
                          {"outcome", NameOf(property.outcome)},
                          {"setting", property.key},
                          {"note", property.note}});
  }
  // File names need not be valid UTF-8, but JSON must.
  std::cout << root.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

void ImportFile(const ImportOptions& options) {
  const CameraRawSettings found = ReadCameraRawSettings(options.input);
  const SettingsImport import = ImportSettings(found);
  if (options.output) StageSettings(import.settings, ResolveOutput(*options.output, options.input))->Commit();
  if (options.json) {
    PrintJson(found.file, import);
    return;
  }
  if (!options.output) std::cout << SettingsText(import.settings);
  PrintList(import);
}

}  // namespace

void AddSettingsCommand(CLI::App& app) {
  CLI::App* settings = app.add_subcommand("settings", "Import settings from another program");
  settings->require_subcommand(1);
  CLI::App* command =
      settings->add_subcommand("import", "Convert Adobe Camera Raw or Lightroom settings to a settings file");
  auto options = std::make_shared<ImportOptions>();
  command
      ->add_option("FILE", options->input,
                   "An XMP file, or a photograph with an XMP sidecar or embedded settings")
      ->required()
      ->type_name("");
  AddSettingsOption(*command, "-o,--output", options->output,
                    "The .json settings file to write (default: standard output)");
  command->add_flag("--json", options->json, "Print the settings and a report on each property as JSON");
  command->callback([options] { ImportFile(*options); });
}

}  // namespace lumvik
