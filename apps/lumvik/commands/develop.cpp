#include "commands/develop.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "batch/worker_report.h"
#include "files/file_paths.h"
#include "lumvik_host.hpp"
#include "options/export.h"
#include "options/in_range.h"
#include "options/overwrite.h"
#include "options/photograph.h"
#include "options/png_output.h"
#include "options/range.h"
#include "options/settings_output.h"
#include "options/subject.h"
#include "terminal/result_line.h"

namespace lumvik {
namespace {

constexpr Range<float> kBlurs = {0, 100};
constexpr char kPreview[] = "Preview";  // heading of its options in the help
constexpr char kHidden[] = "";

struct DevelopOptions {
  Photograph photograph;
  std::optional<std::string> output;
  std::optional<std::string> save_settings;  // file to write all settings to
  ExportOptions how;
  std::optional<std::string> preview;
  float background_blur = 0;
  SubjectPoint subject;
  bool worker_report = false;
};

// Fails before any work is done if a file cannot be written.
void CheckTargets(const DevelopOptions& options) {
  const auto resolve = [&](const std::optional<std::string>& path) {
    return path ? ResolveOutput(*path, options.photograph.input) : std::filesystem::path();
  };
  const std::filesystem::path output = resolve(options.output);
  const std::filesystem::path preview = resolve(options.preview);
  resolve(options.save_settings);
  if (!options.output || !options.preview) return;
  if (std::filesystem::weakly_canonical(output) == std::filesystem::weakly_canonical(preview)) {
    throw CLI::ValidationError("--preview", "'" + *options.preview + "' is also the file of --output");
  }
}

void CheckUsage(const DevelopOptions& options) {
  if (!options.output && !options.preview) throw CLI::RequiredError("--output or --preview");
  if (options.background_blur > 0 && !options.preview) throw CLI::RequiresError("--bg-blur", "--preview");
  if (options.output) CheckBits(options.how, api::FormatOf(*options.output));
}

void WriteOutput(const DevelopOptions& options, api::Photo& photo) {
  photo.Save(*options.output, SaveOptionsOf(options.how));
  const api::Size size = photo.PreviewSize();
  if (options.worker_report) {
    std::cout << LineOf({size.width, size.height}) << '\n';
  } else {
    PrintResult(*options.output, size);
  }
}

void WritePreview(const DevelopOptions& options, api::Photo& photo) {
  api::PreviewOptions how;
  how.background_blur = options.background_blur;
  const api::Image preview = photo.Preview(how);
  api::WritePng(*options.preview, preview, Overwriting());
  PrintResult(*options.preview, {preview.width, preview.height});
}

void Develop(const DevelopOptions& options) {
  CheckUsage(options);
  RequireReadable(options.photograph.input);
  CheckTargets(options);
  const std::optional<std::string> sidecar = SidecarOf(options.photograph, options.photograph.input);
  const api::Settings given = GivenSettings(options.photograph, sidecar);

  api::Photo photo = Open(options.photograph);
  // The point refers to the photograph as it is before development.
  if (options.background_blur > 0) photo.FindSubject(options.subject.x, options.subject.y);
  const api::Settings settings = Adjust(options.photograph, given, photo);
  photo.Render();

  if (options.save_settings) settings.Write(*options.save_settings, true);
  if (options.output) WriteOutput(options, photo);
  if (options.preview) WritePreview(options, photo);
  if (!options.worker_report) PrintSidecar(sidecar);
}

std::string CheckExtension(const std::string& path) {
  if (api::FormatOf(path) != LUMVIK_HOST_FORMAT_UNKNOWN) return {};
  return "'" + path + "' does not end in .jpg, .jpeg, .png, .tif or .tiff";
}

void AddOutputOptions(CLI::App& command, DevelopOptions& options) {
  command
      .add_option("-o,--output", options.output,
                  "The file to write; the extension .jpg, .jpeg, .png, .tif or .tiff selects the format")
      ->type_name("OUT")
      ->check(CLI::Validator(CheckExtension, ""))
      ->group(kOutputGroup);
  AddExportOptions(command, options.how);
  AddSettingsOption(command, "--save-settings", options.save_settings,
                    "Write all settings used to this .json file")
      ->group(kOutputGroup);
  command.add_flag(kWorkerReportOption, options.worker_report)->group(kHidden);
}

void AddPreviewOptions(CLI::App& command, DevelopOptions& options) {
  AddPngOption(command, "--preview", options.preview,
               "Write the on-screen preview to this PNG, in addition to OUT or instead of it")
      ->group(kPreview);
  command
      .add_option("--bg-blur", options.background_blur,
                  "Blur the background of a camera RAW file, in the preview only (default 0)")
      ->type_name("PERCENT")
      ->check(InRange(kBlurs))
      ->group(kPreview);
  AddSubjectOption(command, options.subject)->group(kPreview);
}

}  // namespace

void AddDevelopCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("develop", "Develop a photograph");
  auto options = std::make_shared<DevelopOptions>();
  AddInputOptions(*command, options->photograph);
  AddDevelopOptions(*command, options->photograph);
  AddOutputOptions(*command, *options);
  AddPreviewOptions(*command, *options);
  command->callback([options] { Develop(*options); });
}

}  // namespace lumvik
