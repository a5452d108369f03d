#include "commands/thumb.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "files/file_paths.h"
#include "files/mark.h"
#include "lumvik_host.hpp"
#include "options/in_range.h"
#include "options/outputs.h"
#include "options/overwrite.h"
#include "options/range.h"
#include "options/reporting.h"
#include "terminal/results.h"

namespace lumvik {
namespace {

constexpr Range<int> kSizes = {1, 65535};

struct ThumbOptions {
  std::string input;
  std::string output;
  int size = 0;  // 0: that of the embedded preview or the usual one
  bool no_exif = false;
  bool strip_gps = false;
  bool overwrite = false;
  Reporting reporting;
};

lumvik_host_metadata_policy PolicyOf(const ThumbOptions& options) {
  if (options.no_exif) return LUMVIK_HOST_METADATA_NONE;
  return options.strip_gps ? LUMVIK_HOST_METADATA_NO_POSITION : LUMVIK_HOST_METADATA_KEEP;
}

void MakeThumbnail(const ThumbOptions& options, Results& results) {
  const std::string mark = TextOf({api::Fingerprint(options.input), 0});
  api::ThumbnailOptions how;
  how.max_width = options.size;
  how.max_height = options.size;
  how.metadata = PolicyOf(options);
  how.mark = mark.c_str();
  const api::Thumbnail thumbnail = api::ExtractThumbnail(options.input, how);
  WriteOutput(options.output, [&] {
    api::WriteFile(options.output, thumbnail.data.data(), thumbnail.data.size(),
                   OverwriteRule(options.overwrite));
  });
  results.Wrote(options.output, thumbnail.size);
}

void WriteThumbnail(const ThumbOptions& options) {
  Results results(options.reporting);
  RequireReadable(options.input);
  CheckOutputs({{"--output", options.output, OutputKind::kImage}}, options.input, options.overwrite);
  if (options.reporting.dry_run) {
    api::Identify(options.input);
    results.WouldWrite(options.output);
  } else {
    MakeThumbnail(options, results);
  }
  results.Finish();
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
  command
      ->add_option(
          "--size", options->size,
          "Longest side in pixels, of an upright thumbnail (default: 160, or the embedded preview as "
          "it is)")
      ->type_name("PIXELS")
      ->check(InRange(kSizes));
  command->add_flag("--no-exif", options->no_exif, "Do not copy the photograph's metadata");
  command->add_flag("--strip-gps", options->strip_gps, "Do not copy GPS data");
  AddOverwriteOption(*command, options->overwrite);
  AddReportingOptions(*command, options->reporting);
  AddDryRunOption(*command, options->reporting);
  command->callback([options] { WriteThumbnail(*options); });
}

}  // namespace lumvik
