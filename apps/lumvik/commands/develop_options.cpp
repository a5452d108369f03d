#include "commands/develop_options.h"

#include <CLI/CLI.hpp>

#include "batch/worker_report.h"
#include "options/in_range.h"
#include "options/output_format.h"
#include "options/png_output.h"
#include "options/range.h"
#include "options/settings_output.h"
#include "terminal/standard_streams.h"

namespace lumvik {
namespace {

constexpr Range<float> kBlurs = {0, 100};
constexpr char kPreview[] = "Preview";  // heading of its options in the help
constexpr char kHidden[] = "";

void CheckStreams(const DevelopOptions& options) {
  if (options.ToStandardOutput()) {
    if (!options.format) throw CLI::RequiredError("--format");
    if (options.reporting.json) throw CLI::ExcludesError("--json", "--output -");
  } else if (options.format && (!options.output || options.Format() != api::FormatOf(*options.output))) {
    throw CLI::ValidationError("--format", "the extension of --output selects another format");
  }
  const bool has_times = !options.ToStandardOutput() && !IsStandardStream(options.photograph.input);
  if (options.how.keep_times && !has_times) {
    throw CLI::ValidationError("--keep-times", "standard input and output have no times");
  }
}

std::string CheckExtension(const std::string& path) {
  if (IsStandardStream(path) || api::FormatOf(path) != LUMVIK_HOST_FORMAT_UNKNOWN) return {};
  return "'" + path + "' does not end in .jpg, .jpeg, .png, .tif or .tiff";
}

void AddOutputOptions(CLI::App& command, DevelopOptions& options) {
  command
      .add_option("-o,--output", options.output,
                  "The file to write; the extension .jpg, .jpeg, .png, .tif or .tiff selects the format. "
                  "- is standard output")
      ->type_name("OUT")
      ->check(CLI::Validator(CheckExtension, ""))
      ->group(kOutputGroup);
  AddFormatOption(command, options.format, "Format of standard output: jpg, png or tiff")
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

bool DevelopOptions::ToStandardOutput() const {
  return output && IsStandardStream(*output);
}

lumvik_host_format DevelopOptions::Format() const {
  return format ? FormatNamed(*format) : api::FormatOf(*output);
}

void AddOptionsOfDevelop(CLI::App& command, DevelopOptions& options) {
  AddInputOptions(command, options.photograph);
  AddDevelopOptions(command, options.photograph);
  AddOutputOptions(command, options);
  AddPreviewOptions(command, options);
  AddReportingOptions(command, options.reporting);
  AddDryRunOption(command, options.reporting);
}

void CheckUsage(const DevelopOptions& options) {
  if (!options.output && !options.preview) throw CLI::RequiredError("--output or --preview");
  if (options.background_blur > 0 && !options.preview) throw CLI::RequiresError("--bg-blur", "--preview");
  CheckStreams(options);
  if (options.output) CheckBits(options.how, options.Format());
}

std::vector<Output> OutputsOf(const DevelopOptions& options) {
  std::vector<Output> outputs;
  if (options.output && !options.ToStandardOutput()) {
    outputs.push_back({"--output", *options.output, OutputKind::kImage});
  }
  if (options.preview) outputs.push_back({"--preview", *options.preview, OutputKind::kImage});
  if (options.save_settings) {
    outputs.push_back({"--save-settings", *options.save_settings, OutputKind::kSettings});
  }
  return outputs;
}

}  // namespace lumvik
