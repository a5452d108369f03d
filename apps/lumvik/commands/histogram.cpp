#include "commands/histogram.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "commands/histogram_image.h"
#include "lumvik_host.hpp"
#include "options/outputs.h"
#include "options/overwrite.h"
#include "options/photograph.h"
#include "options/png_output.h"
#include "options/reporting.h"
#include "terminal/json.h"
#include "terminal/results.h"

namespace lumvik {
namespace {

struct HistogramOptions {
  Photograph photograph;
  std::optional<std::string> output;
  bool overwrite = false;
  Reporting reporting;
};

// The histograms are always JSON.
Reporting InJson(Reporting reporting) {
  reporting.json = reporting.json || !reporting.dry_run;
  return reporting;
}

void Print(const api::Histogram& counts, api::Size size, const Results& results) {
  Json json = {{"width", size.width},   {"height", size.height}, {"red", counts.red},
               {"green", counts.green}, {"blue", counts.blue},   {"luminance", counts.luminance}};
  json.update(results.Summary());
  std::cout << json.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

void CountPixels(const HistogramOptions& options, const api::Settings& given, Results& results) {
  api::Photo photo = Open(options.photograph, results);
  Adjust(options.photograph, given, photo);
  const api::Histogram counts = photo.GetHistogram();
  results.NoteStep("developed");
  if (options.output) {
    const std::string mark = MarkOf(options.photograph);
    const api::Image image = HistogramImage(counts);
    WriteOutput(*options.output,
                [&] { api::WritePng(*options.output, image, MarkedWith(mark, options.overwrite)); });
    results.Wrote(*options.output, {image.width, image.height});
  }
  results.WarnOfUnused(photo);
  Print(counts, photo.PreviewSize(), results);
}

void ShowHistogram(const HistogramOptions& options) {
  const Photograph& photograph = options.photograph;
  Results results(InJson(options.reporting));
  RequireInput(photograph);
  if (options.output) {
    CheckOutputs({{"--output", *options.output, OutputKind::kImage}}, photograph.input, options.overwrite);
  }
  const api::Settings given = ReadSettings(photograph, results);
  if (!options.reporting.dry_run) return CountPixels(options, given, results);
  CheckUndecoded(photograph, false);
  if (options.output) results.WouldWrite(*options.output);
  results.Finish();
}

}  // namespace

void AddHistogramCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("histogram", "Print the histograms of a developed photograph as JSON");
  auto options = std::make_shared<HistogramOptions>();
  AddInputOptions(*command, options->photograph);
  AddDevelopOptions(*command, options->photograph);
  AddPngOption(*command, "-o,--output", options->output, "Also draw the histograms to this PNG");
  AddOverwriteOption(*command, options->overwrite);
  AddReportingOptions(*command, options->reporting);
  AddDryRunOption(*command, options->reporting);
  command->callback([options] { ShowHistogram(*options); });
}

}  // namespace lumvik
