#include "commands/cutout.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

#include "files/file_paths.h"
#include "lumvik_host.hpp"
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

void CutOut(const CutoutOptions& options) {
  RequireReadable(options.photograph.input);
  ResolveOutput(options.output, options.photograph.input);
  const std::optional<std::string> sidecar = SidecarOf(options.photograph, options.photograph.input);
  const api::Settings given = GivenSettings(options.photograph, sidecar);
  api::Photo photo = Open(options.photograph);
  photo.FindSubject(options.point.x, options.point.y);
  Adjust(options.photograph, given, photo);
  api::SaveOptions how;
  how.overwrite = 1;
  photo.SaveCutout(options.output, how);
  PrintResult(options.output, photo.PreviewSize());
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
