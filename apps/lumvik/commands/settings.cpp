#include "commands/settings.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "files/file_paths.h"
#include "files/settings_text.h"
#include "lumvik_host.hpp"
#include "options/outputs.h"
#include "options/overwrite.h"
#include "options/photograph.h"
#include "options/reporting.h"
#include "options/settings_output.h"
#include "terminal/json.h"
#include "terminal/printable.h"
#include "terminal/results.h"

namespace lumvik {
namespace {

struct ConversionOptions {
  std::string input;
  std::optional<std::string> output;
  bool overwrite = false;
  Reporting reporting;
};

// Writes the text to the file of --output, if there is one.
void WriteConverted(const ConversionOptions& options, const std::string& text, Results& results) {
  if (!options.output) return;
  CheckOutputs({{"--output", *options.output, OutputKind::kSettings}}, options.input, options.overwrite);
  if (options.reporting.dry_run) {
    RequireReplaceableSettings(*options.output, text, options.overwrite);
    results.WouldWrite(*options.output);
  } else {
    WriteOutput(*options.output, [&] { WriteSettingsText(*options.output, text, options.overwrite); });
    results.WroteSettings(*options.output);
  }
}

// Lines such as "scaled   Whites2012 +20: whites (times -1)".
void PrintList(const Json& report) {
  for (const Json& property : report["properties"]) {
    const auto text = [&](const char* name) { return Printable(property[name].get<std::string>()); };
    std::cerr << std::left << std::setw(9) << text("outcome") << text("name") << ' ' << text("value");
    if (!text("key").empty()) std::cerr << ": " << text("key");
    if (!text("note").empty()) std::cerr << " (" << text("note") << ')';
    std::cerr << '\n';
  }
}

void PrintReport(const Json& report, const api::Settings& settings, const Results& results) {
  Json root = {{"file", report["file"]}, {"settings", Json::parse(settings.ToJson())}};
  Json& properties = root["properties"] = Json::array();
  for (const Json& property : report["properties"]) {
    properties.push_back({{"name", property["name"]},
                          {"value", property["value"]},
                          {"outcome", property["outcome"]},
                          {"setting", property["key"]},
                          {"note", property["note"]}});
  }
  root.update(results.Summary());
  PrintIndented(root);
}

api::Settings Import(const std::string& input, std::string& report) {
  try {
    return api::Settings::ImportXmp(input, &report);
  } catch (const api::Error& error) {
    if (error.status() != LUMVIK_HOST_DAMAGED) throw;
    throw std::runtime_error(error.what());  // it is no photograph that is damaged
  }
}

void ImportFile(const ConversionOptions& options) {
  Results results(options.reporting);
  std::string report_text;
  const api::Settings settings = Import(options.input, report_text);
  const Json report = Json::parse(report_text);
  results.ReadSettings(report["file"].get<std::string>());
  WriteConverted(options, settings.ToJson(), results);
  if (options.reporting.json) return PrintReport(report, settings, results);
  if (!options.output) std::cout << settings.ToJson();
  if (!options.reporting.quiet) PrintList(report);
}

// The settings file itself, or the one next to a photograph.
std::string SettingsFileOf(const std::string& input) {
  RequireReadable(input);
  if (std::filesystem::u8path(input).extension() == kSettingsExtension) return input;
  const std::optional<std::string> sidecar = api::FindSidecar(input, kSettingsSidecar);
  if (sidecar) return *sidecar;
  throw api::Error(LUMVIK_HOST_NOT_FOUND, "'" + input + "' has no settings file next to it");
}

void ExportFile(const ConversionOptions& options) {
  Results results(options.reporting);
  const std::string file = SettingsFileOf(options.input);
  results.ReadSettings(file);
  const std::string xmp = api::Settings::Read(file).ToXmp();
  WriteConverted(options, xmp, results);
  if (options.reporting.json) {
    Json root = {{"xmp", xmp}};
    root.update(results.Summary());
    PrintIndented(root);
  } else if (!options.output) {
    std::cout << xmp;
  }
}

// Adds a command that converts the FILE with `convert`.
void AddConversion(CLI::App& command, const std::string& file, const std::string& extension,
                   void (*convert)(const ConversionOptions&)) {
  auto options = std::make_shared<ConversionOptions>();
  command.add_option("FILE", options->input, file)->required()->type_name("");
  AddSettingsOption(command, "-o,--output", options->output,
                    "The " + extension + " file to write (default: standard output)", extension);
  AddOverwriteOption(command, options->overwrite);
  AddReportingOptions(command, options->reporting);
  AddDryRunOption(command, options->reporting);
  command.callback([options, convert] { convert(*options); });
}

}  // namespace

void AddSettingsCommand(CLI::App& app) {
  CLI::App* settings = app.add_subcommand("settings", "Exchange settings with other programs");
  settings->require_subcommand(1);
  AddConversion(*settings->add_subcommand(
                    "import", "Convert Adobe Camera Raw or Lightroom settings to a settings file"),
                "An XMP file, or a photograph with an XMP sidecar or embedded settings", kSettingsExtension,
                ImportFile);
  AddConversion(*settings->add_subcommand("export", "Convert a settings file to XMP"),
                "A .json settings file, or a photograph with one next to it", kXmpExtension, ExportFile);
}

}  // namespace lumvik
