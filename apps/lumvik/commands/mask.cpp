#include "commands/mask.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "develop/png_file.h"
#include "files/file_paths.h"
#include "lumvik.h"
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

// At the size of the photograph before development.
Pixels MaskOf(Engine& engine) {
  Pixels mask{lumvik_get_width(engine.Context()), lumvik_get_height(engine.Context()), 1, {}};
  mask.data.resize(static_cast<size_t>(mask.width) * static_cast<size_t>(mask.height));
  engine.Run("cannot get the mask", [&](EngineContext* context) {
    return lumvik_get_mask(context, mask.data.data(), static_cast<int>(mask.data.size()));
  });
  return mask;
}

void WriteMask(const MaskOptions& options) {
  RequireReadable(options.photograph.input);
  const auto target = ResolveOutput(options.output, options.photograph.input);
  Engine engine;
  Load(options.photograph, engine);
  FindSubject(options.photograph.input, options.point, engine);
  const Pixels mask = MaskOf(engine);
  WritePng(mask, target);
  PrintResult(options.output, mask.width, mask.height);
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
