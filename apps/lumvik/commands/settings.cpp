#include "commands/settings.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "files/file_paths.h"
#include "lumvik_host.hpp"
#include "options/settings_output.h"
#include "terminal/json.h"

namespace lumvik {
namespace {

struct ImportOptions {
  std::string input;
  std::optional<std::string> output;
  bool json = false;
};

// Lines such as "scaled   Whites2012 +20: whites (times -1)". Control characters in values become spaces.
void PrintList(const Json& report) {
  for (const Json& property : report["properties"]) {
    const auto text = [&](const char* name) { return property[name].get<std::string>(); };
    std::string value = text("value");
    std::replace_if(
        value.begin(), value.end(), [](unsigned char c) { return c < ' '; }, ' ');
    std::cerr << std::left << std::setw(9) << text("outcome") << text("name") << ' ' << value;
    if (!text("key").empty()) std::cerr << ": " << text("key");
    if (!text("note").empty()) std::cerr << " (" << text("note") << ')';
    std::cerr << '\n';
  }
}

void PrintReport(const Json& report, const api::Settings& settings) {
  Json root = {{"file", report["file"]}, {"settings", Json::parse(settings.ToJson())}};
  Json& properties = root["properties"] = Json::array();
  for (const Json& property : report["properties"]) {
    properties.push_back({{"name", property["name"]},
                          {"value", property["value"]},
                          {"outcome", property["outcome"]},
                          {"setting", property["key"]},
                          {"note", property["note"]}});
  }
  PrintIndented(root);
}

void ImportFile(const ImportOptions& options) {
  std::string report_text;
  const api::Settings settings = api::Settings::ImportXmp(options.input, &report_text);
  const Json report = Json::parse(report_text);
  if (options.output) {
    ResolveOutput(*options.output, options.input);
    settings.Write(*options.output, true);
  }
  if (options.json) return PrintReport(report, settings);
  if (!options.output) std::cout << settings.ToJson();
  PrintList(report);
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
