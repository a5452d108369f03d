#include "commands/histogram.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "commands/histogram_image.h"
#include "files/file_paths.h"
#include "lumvik_host.hpp"
#include "options/overwrite.h"
#include "options/photograph.h"
#include "options/png_output.h"

namespace lumvik {
namespace {

struct HistogramOptions {
  Photograph photograph;
  std::optional<std::string> output;
};

void Print(const api::Histogram& counts, api::Size size) {
  const nlohmann::ordered_json json = {{"width", size.width}, {"height", size.height},
                                       {"red", counts.red},   {"green", counts.green},
                                       {"blue", counts.blue}, {"luminance", counts.luminance}};
  std::cout << json.dump() << '\n';
}

void ShowHistogram(const HistogramOptions& options) {
  const std::string& input = options.photograph.input;
  RequireReadable(input);
  if (options.output) ResolveOutput(*options.output, input);
  const api::Settings given = GivenSettings(options.photograph, SidecarOf(options.photograph, input));
  api::Photo photo = Open(options.photograph);
  Adjust(options.photograph, given, photo);
  const api::Histogram counts = photo.GetHistogram();
  if (options.output) api::WritePng(*options.output, HistogramImage(counts), Overwriting());
  Print(counts, photo.PreviewSize());
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
