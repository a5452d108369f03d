#include "commands/cutout.h"

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

struct CutoutOptions {
  Photograph photograph;
  SubjectPoint point;
  std::string output;
  bool overwrite = false;
  Reporting reporting;
};

void MakeCutout(const CutoutOptions& options, const api::Settings& given, Results& results) {
  api::Photo photo = Open(options.photograph, results);
  photo.FindSubject(options.point.x, options.point.y);
  results.NoteStep("subject found");
  Adjust(options.photograph, given, photo);
  const std::string mark = MarkOf(options.photograph);
  WriteOutput(options.output, [&] { photo.SaveCutout(options.output, MarkedWith(mark, options.overwrite)); });
  results.NoteStep("developed and saved");
  results.WarnOfUnused(photo);
  results.Wrote(options.output, photo.PreviewSize());
}

void CutOut(const CutoutOptions& options) {
  Results results(options.reporting);
  RequireInput(options.photograph);
  CheckOutputs({{"--output", options.output, OutputKind::kImage}}, options.photograph.input,
               options.overwrite);
  const api::Settings given = ReadSettings(options.photograph, results);
  if (options.reporting.dry_run) {
    CheckUndecoded(options.photograph, true);
    results.WouldWrite(options.output);
  } else {
    MakeCutout(options, given, results);
  }
  results.Finish();
}

}  // namespace

void AddCutoutCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(
      "cutout", "Develop a camera RAW file and write its subject on a transparent background");
  auto options = std::make_shared<CutoutOptions>();
  AddInputOptions(*command, options->photograph);
  AddDevelopOptions(*command, options->photograph);
  AddPngOption(*command, "-o,--output", options->output, "The PNG to write, transparent outside the subject")
      ->required();
  AddSubjectOption(*command, options->point);
  AddOverwriteOption(*command, options->overwrite);
  AddReportingOptions(*command, options->reporting);
  AddDryRunOption(*command, options->reporting);
  command->callback([options] { CutOut(*options); });
}

}  // namespace lumvik
