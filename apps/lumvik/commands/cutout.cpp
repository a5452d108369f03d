#include "commands/cutout.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "develop/output_format.h"
#include "develop/staged_file.h"
#include "files/file_paths.h"
#include "lumvik.h"
#include "options/photograph.h"
#include "options/png_output.h"
#include "options/subject.h"
#include "terminal/result_line.h"

namespace lumvik {
namespace {

struct CutoutOptions {
  Photograph photograph;
  SubjectPoint point;
  std::string output;
};

// These move pixels away from the mask, which is made before any geometric correction.
constexpr const char* kGeometrySettings[] = {"distortion", "rotation", "perspective_h", "perspective_v",
                                             "crop.w",     "flip_h",   "flip_v"};

void RequireNoGeometry(const Settings& settings) {
  for (const char* key : kGeometrySettings) {
    if (settings.at(key) == FindSettingRule(key)->initial) continue;
    throw std::runtime_error("cutout does not support '" +
                             std::string(key).substr(0, std::string(key).find('.')) +
                             "': the mask is made before any geometric correction");
  }
}

void CutOut(const CutoutOptions& options) {
  RequireReadable(options.photograph.input);
  const auto target = ResolveOutput(options.output, options.photograph.input);
  const std::optional<std::string> sidecar = SidecarOf(options.photograph);
  Settings given = GivenSettings(options.photograph, sidecar);
  Engine engine;
  Load(options.photograph, engine);
  RequireNoGeometry(Adjust(options.photograph, std::move(given), engine));
  FindSubject(options.photograph.input, options.point, engine);
  StagedFile file(target, ExtensionOf(OutputFormat::kPng));
  engine.Run("cannot write '" + options.output + "'", [&](EngineContext* context) {
    return lumvik_export_subject_png(context, file.TemporaryPath().c_str());
  });
  file.Commit();
  PrintResult(options.output, lumvik_get_width(engine.Context()), lumvik_get_height(engine.Context()));
  PrintSidecar(sidecar);
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
  command->callback([options] { CutOut(*options); });
}

}  // namespace lumvik
