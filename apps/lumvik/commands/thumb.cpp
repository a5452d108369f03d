#include "commands/thumb.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "files/file_paths.h"
#include "lumvik_host.hpp"
#include "terminal/result_line.h"

namespace lumvik {
namespace {

struct ThumbOptions {
  std::string input;
  std::string output;
};

void WriteThumbnail(const ThumbOptions& options) {
  RequireReadable(options.input);
  ResolveOutput(options.output, options.input);
  const api::Thumbnail thumbnail = api::ExtractThumbnail(options.input);
  api::WriteFile(options.output, thumbnail.data.data(), thumbnail.data.size(), LUMVIK_HOST_OVERWRITE_ANY);
  PrintResult(options.output, thumbnail.size);
}

std::string CheckJpegExtension(const std::string& path) {
  if (api::FormatOf(path) == LUMVIK_HOST_FORMAT_JPEG) return {};
  return "'" + path + "' does not end in .jpg or .jpeg; thumbnails are always JPEG";
}

}  // namespace

void AddThumbCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("thumb", "Write a thumbnail of a photograph, or the preview embedded in a RAW file");
  auto options = std::make_shared<ThumbOptions>();
  command->add_option("IN", options->input, "The photograph: camera RAW, JPEG, PNG, TIFF, BMP or WebP")
      ->required()
      ->type_name("");
  command->add_option("-o,--output", options->output, "The .jpg or .jpeg file to write")
      ->required()
      ->type_name("OUT")
      ->check(CLI::Validator(CheckJpegExtension, ""));
  command->callback([options] { WriteThumbnail(*options); });
}

}  // namespace lumvik
