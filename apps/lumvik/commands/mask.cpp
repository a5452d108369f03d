#include "commands/mask.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "lumvik_host.hpp"
#include "options/outputs.h"
#include "options/overwrite.h"
#include "options/photograph.h"
#include "options/png_output.h"
#include "options/reporting.h"
#include "options/subject.h"
#include "terminal/results.h"

namespace lumvik {
namespace {

struct MaskOptions {
  Photograph photograph;
  SubjectPoint point;
  std::string output;
  bool overwrite = false;
  Reporting reporting;
};

void MakeMask(const MaskOptions& options, Results& results) {
  api::Photo photo = Open(options.photograph, results);
  photo.FindSubject(options.point.x, options.point.y);
  results.NoteStep("subject found");
  const api::Image mask = photo.Mask();
  const std::string mark = MarkOf(options.photograph);
  WriteOutput(options.output,
              [&] { api::WritePng(options.output, mask, MarkedWith(mark, options.overwrite)); });
  results.WarnOfUnused(photo);
  results.Wrote(options.output, {mask.width, mask.height});
}

void WriteMask(const MaskOptions& options) {
  Results results(options.reporting);
  RequireInput(options.photograph);
  CheckOutputs({{"--output", options.output, OutputKind::kImage}}, options.photograph.input,
               options.overwrite);
  if (options.reporting.dry_run) {
    CheckUndecoded(options.photograph, true);
    results.WouldWrite(options.output);
  } else {
    MakeMask(options, results);
  }
  results.Finish();
}

}  // namespace

void AddMaskCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("mask", "Write a mask of the subject of a camera RAW file");
  auto options = std::make_shared<MaskOptions>();
  AddInputOptions(*command, options->photograph);
  AddPngOption(*command, "-o,--output", options->output, "The PNG to write: white subject, black background")
      ->required();
  AddSubjectOption(*command, options->point);
  AddOverwriteOption(*command, options->overwrite);
  AddReportingOptions(*command, options->reporting);
  AddDryRunOption(*command, options->reporting);
  command->callback([options] { WriteMask(*options); });
}

}  // namespace lumvik
