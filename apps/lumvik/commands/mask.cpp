#include "commands/mask.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "files/file_paths.h"
#include "lumvik_host.hpp"
#include "options/overwrite.h"
#include "options/photograph.h"
#include "options/png_output.h"
#include "options/subject.h"
#include "terminal/result_line.h"

namespace lumvik {
namespace {

struct MaskOptions {
  Photograph photograph;
  SubjectPoint point;
  std::string output;
};

void WriteMask(const MaskOptions& options) {
  RequireReadable(options.photograph.input);
  ResolveOutput(options.output, options.photograph.input);
  api::Photo photo = Open(options.photograph);
  photo.FindSubject(options.point.x, options.point.y);
  const api::Image mask = photo.Mask();
  api::WritePng(options.output, mask, Overwriting());
  PrintResult(options.output, {mask.width, mask.height});
}

}  // namespace

void AddMaskCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("mask", "Write a mask of the subject of a camera RAW file");
  auto options = std::make_shared<MaskOptions>();
  AddInputOptions(*command, options->photograph);
  AddPngOption(*command, "-o,--output", options->output, "The PNG to write: white subject, black background")
      ->required();
  AddSubjectOption(*command, options->point);
  command->callback([options] { WriteMask(*options); });
}

}  // namespace lumvik
