#include "commands/histogram.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "commands/histogram_image.h"
#include "develop/png_file.h"
#include "develop/settings_json.h"
#include "files/file_paths.h"
#include "lumvik.h"
#include "options/photograph.h"
#include "options/png_output.h"

namespace lumvik {
namespace {

struct HistogramOptions {
  Photograph photograph;
  std::optional<std::string> output;
};

Histograms Count(Engine& engine, const std::string& input) {
  Histograms counts;
  engine.Run("cannot develop '" + input + "'", [&](EngineContext* context) {
    return lumvik_get_histogram(context, counts.red.data(), counts.green.data(), counts.blue.data(),
                                counts.luminance.data());
  });
  return counts;
}

void Print(const Histograms& counts, int width, int height) {
  Json root = Json::object();
  root["width"] = width;
  root["height"] = height;
  root["red"] = counts.red;
  root["green"] = counts.green;
  root["blue"] = counts.blue;
  root["luminance"] = counts.luminance;
  std::cout << root.dump() << '\n';
}

void ShowHistogram(const HistogramOptions& options) {
  RequireReadable(options.photograph.input);
  std::filesystem::path target;
  if (options.output) target = ResolveOutput(*options.output, options.photograph.input);
  Settings given = GivenSettings(options.photograph, SidecarOf(options.photograph));
  Engine engine;
  Load(options.photograph, engine);
  Adjust(options.photograph, std::move(given), engine);
  const Histograms counts = Count(engine, options.photograph.input);
  if (options.output) WritePng(HistogramImage(counts), target);
  Print(counts, lumvik_get_width(engine.Context()), lumvik_get_height(engine.Context()));
}

}  // namespace

void AddHistogramCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("histogram", "Print the histograms of a developed photograph as JSON");
  auto options = std::make_shared<HistogramOptions>();
  AddInputOptions(*command, options->photograph);
  AddDevelopOptions(*command, options->photograph);
  AddPngOption(*command, "-o,--output", options->output, "Also draw the histograms to this PNG");
  command->callback([options] { ShowHistogram(*options); });
}

}  // namespace lumvik
