#include "commands/develop.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "develop/engine.h"
#include "develop/image_metadata.h"
#include "develop/output_format.h"
#include "develop/png_file.h"
#include "develop/settings.h"
#include "develop/settings_file.h"
#include "develop/staged_file.h"
#include "files/file_paths.h"
#include "lumvik.h"
#include "options/export.h"
#include "options/in_range.h"
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

struct DevelopOptions {
  Photograph photograph;
  std::optional<std::string> output;
  std::optional<std::string> save_settings;  // file to write all settings to
  ExportOptions how;
  std::optional<std::string> preview;
  float background_blur = 0;
  SubjectPoint subject;
};

Pixels PreviewOf(const DevelopOptions& options, Engine& engine) {
  EngineContext* const context = engine.Context();
  if (options.background_blur > 0) {
    FindSubject(options.photograph.input, options.subject, engine);
    lumvik_set_bg_blur(context, options.background_blur);
  }
  Pixels preview{lumvik_get_width(context), lumvik_get_height(context), 4, {}};
  preview.data.resize(static_cast<size_t>(preview.width) * static_cast<size_t>(preview.height) * 4);
  engine.Run("cannot preview '" + options.photograph.input + "'", [&](EngineContext*) {
    return lumvik_get_preview(context, preview.data.data(), static_cast<int>(preview.data.size()));
  });
  return preview;
}

void WriteOutput(const DevelopOptions& options, const std::filesystem::path& target, OutputFormat format,
                 Engine& engine) {
  StagedFile file(target, ExtensionOf(format));
  engine.Run("cannot write '" + *options.output + "'", [&](EngineContext* context) {
    const int status = Export(context, options.how, format, file.TemporaryPath().c_str());
    if (status == 0 && !options.how.no_exif) {
      CopyMetadata(options.photograph.input, file.TemporaryPath(), options.how.strip_gps);
    }
    return status;
  });
  file.Commit();
  PrintResult(*options.output, lumvik_get_width(engine.Context()), lumvik_get_height(engine.Context()));
}

// The files to write, resolved before any work is done.
struct Targets {
  std::filesystem::path output;
  std::filesystem::path preview;
  std::filesystem::path settings;
};

Targets ResolveTargets(const DevelopOptions& options) {
  const auto resolve = [&](const std::optional<std::string>& path) {
    return path ? ResolveOutput(*path, options.photograph.input) : std::filesystem::path();
  };
  return {resolve(options.output), resolve(options.preview), resolve(options.save_settings)};
}

void RequireTwoFiles(const DevelopOptions& options, const Targets& targets) {
  if (!options.output || !options.preview) return;
  if (std::filesystem::weakly_canonical(targets.output) ==
      std::filesystem::weakly_canonical(targets.preview)) {
    throw CLI::ValidationError("--preview", "'" + *options.preview + "' is also the file of --output");
  }
}

void CheckUsage(const DevelopOptions& options) {
  if (!options.output && !options.preview) throw CLI::RequiredError("--output or --preview");
  if (options.background_blur > 0 && !options.preview) throw CLI::RequiresError("--bg-blur", "--preview");
  if (options.output) CheckBits(options.how, *OutputFormatOf(*options.output));
}

void Develop(const DevelopOptions& options) {
  CheckUsage(options);
  RequireReadable(options.photograph.input);
  const Targets targets = ResolveTargets(options);
  RequireTwoFiles(options, targets);
  const std::optional<std::string> sidecar = SidecarOf(options.photograph);
  Settings given = GivenSettings(options.photograph, sidecar);

  Engine engine;
  Load(options.photograph, engine);
  const Settings settings = Adjust(options.photograph, std::move(given), engine);
  engine.Run("cannot develop '" + options.photograph.input + "'", lumvik_process);

  std::unique_ptr<StagedFile> settings_file;
  if (options.save_settings) settings_file = StageSettings(settings, targets.settings);
  if (options.output) WriteOutput(options, targets.output, *OutputFormatOf(*options.output), engine);
  if (options.preview) {
    const Pixels preview = PreviewOf(options, engine);
    WritePng(preview, targets.preview);
    PrintResult(*options.preview, preview.width, preview.height);
  }
  PrintSidecar(sidecar);
  if (settings_file) settings_file->Commit();
}

std::string CheckExtension(const std::string& path) {
  if (OutputFormatOf(path)) return {};
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
  AddSettingsOption(*command, "--save-settings", options->save_settings,
                    "Write all settings used to this .json file")
      ->group(kOutputGroup);
  AddPreviewOptions(*command, *options);
  command->callback([options] { Develop(*options); });
}

}  // namespace lumvik
