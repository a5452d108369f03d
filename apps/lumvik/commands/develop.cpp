#include "commands/develop.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "batch/worker_report.h"
#include "commands/develop_options.h"
#include "files/file_times.h"
#include "files/settings_text.h"
#include "lumvik_host.hpp"
#include "options/overwrite.h"
#include "options/settings_digest.h"
#include "terminal/results.h"
#include "terminal/standard_streams.h"

namespace lumvik {
namespace {

// Fails before the photograph is decoded.
void CheckFiles(const DevelopOptions& options) {
  RequireInput(options.photograph);
  if (options.ToStandardOutput()) RequireRedirectedOutput();
  CheckOutputs(OutputsOf(options), options.photograph.input, options.how.overwrite);
}

void RequireReplaceable(const DevelopOptions& options, const api::Settings& settings) {
  if (!options.save_settings) return;
  RequireReplaceableSettings(*options.save_settings, settings.ToJson(), options.how.overwrite);
}

void DryRun(const DevelopOptions& options, Results& results) {
  CheckUndecoded(options.photograph, options.background_blur > 0);
  if (options.output && !options.how.no_exif) api::RequireMetadataModule();
  for (const Output& output : OutputsOf(options)) results.WouldWrite(output.path);
}

api::Size WrittenSize(const DevelopOptions& options, api::Photo& photo) {
  const api::Size box = BoxOf(options.how.size, photo.PreviewSize());
  api::PreviewOptions written;
  written.max_width = box.width;
  written.max_height = box.height;
  return photo.PreviewSize(written);
}

void SaveImage(const DevelopOptions& options, const api::Settings& given, api::Photo& photo,
               Results& results) {
  const std::uint64_t digest = SettingsDigest(options.photograph, given, options.how, options.Format());
  const std::string mark = MarkOf(options.photograph, digest);
  api::SaveOptions how = SaveOptionsOf(options.how, photo.PreviewSize(), mark);
  how.format = options.Format();
  if (options.ToStandardOutput()) return WriteStandardOutput(photo.SaveBytes(how));

  WriteOutput(*options.output, [&] { photo.Save(*options.output, how); });
  results.Wrote(*options.output, WrittenSize(options, photo));
}

void SavePreview(const DevelopOptions& options, api::Photo& photo, Results& results) {
  api::PreviewOptions how;
  how.background_blur = options.background_blur;
  const api::Image preview = photo.Preview(how);
  const std::string mark = MarkOf(options.photograph);
  WriteOutput(*options.preview,
              [&] { api::WritePng(*options.preview, preview, MarkedWith(mark, options.how.overwrite)); });
  results.Wrote(*options.preview, {preview.width, preview.height});
}

// Writes the image first: it is what the rest is about.
void WriteFiles(const DevelopOptions& options, const api::Settings& given, const api::Settings& used,
                api::Photo& photo, Results& results) {
  RequireReplaceable(options, used);
  if (options.output) SaveImage(options, given, photo, results);
  if (options.preview) SavePreview(options, photo, results);
  if (options.save_settings) {
    WriteOutput(*options.save_settings,
                [&] { WriteSettingsText(*options.save_settings, used.ToJson(), options.how.overwrite); });
    results.WroteSettings(*options.save_settings);
  }
  results.NoteStep("saved");
  results.WarnOfUnused(photo);
}

void PrintWorkerReport(api::Size size, const Results& results) {
  const WorkerReport report = {size.width, size.height, results.Damage().value_or(""), results.Warnings()};
  std::cout << LineOf(report) << '\n';
}

void DevelopPhotograph(const DevelopOptions& options, const api::Settings& given, Results& results) {
  const Photograph& photograph = options.photograph;
  std::optional<FileTimes> times;  // before the photograph is read
  if (options.how.keep_times && options.output) times.emplace(photograph.input);
  api::Photo photo = Open(photograph, results, KeepsColors(options.how));
  // The point refers to the photograph as it is before development.
  if (options.background_blur > 0) photo.FindSubject(options.subject.x, options.subject.y);
  const api::Settings used = Adjust(photograph, given, photo);
  photo.Render();
  results.NoteStep("developed");
  WriteFiles(options, given, used, photo, results);
  if (times) times->ApplyTo(*options.output);
  if (options.worker_report) PrintWorkerReport(WrittenSize(options, photo), results);
}

// The batch reports for its workers.
Reporting ReportingOf(const DevelopOptions& options) {
  Reporting reporting = options.reporting;
  reporting.quiet = reporting.quiet || options.worker_report;
  return reporting;
}

void Develop(const DevelopOptions& options) {
  CheckUsage(options);
  CheckFiles(options);
  Results results(ReportingOf(options));
  const api::Settings given = ReadSettings(options.photograph, results);
  if (!IsAutomatic(options.photograph)) RequireReplaceable(options, Completed(given));
  if (options.reporting.dry_run) {
    DryRun(options, results);
  } else {
    DevelopPhotograph(options, given, results);
  }
  results.Finish();
}

}  // namespace

void AddDevelopCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("develop", "Develop a photograph");
  auto options = std::make_shared<DevelopOptions>();
  AddOptionsOfDevelop(*command, *options);
  command->callback([options] { Develop(*options); });
}

}  // namespace lumvik
