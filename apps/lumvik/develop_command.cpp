#include "develop_command.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "adjustment_options.h"
#include "engine.h"
#include "in_range.h"
#include "lumvik.h"
#include "output_format.h"
#include "photograph_paths.h"
#include "staged_file.h"
#include "written_jpeg.h"

namespace lumvik {
namespace {

struct DevelopOptions {
  std::string input;
  std::string output;
  AdjustmentOptions adjustments;
  int decode_quality = 1;
  int jpeg_quality = 90;
  std::optional<int> bits;
  bool no_exif = false;
};

// Refuses a depth that the format cannot hold, rather than writing another one than was asked for.
void CheckBits(std::optional<int> bits, OutputFormat format) {
  if (format == OutputFormat::kJpeg && bits == 16) {
    throw CLI::ValidationError("--bits", "a JPEG holds 8 bits a channel; write a PNG or TIFF for 16");
  }
  if (format == OutputFormat::kTiff && bits == 8) {
    throw CLI::ValidationError("--bits",
                               "a TIFF is always written with 16 bits a channel; write a PNG for 8");
  }
}

int ExportJpeg(EngineContext* context, const DevelopOptions& options, const char* path) {
  const int status = lumvik_export_jpeg(context, path, options.jpeg_quality, 0, options.no_exif ? 0 : 1);
  if (status == 0 && !options.no_exif) FinishExif(path);
  return status;
}

int Export(EngineContext* context, const DevelopOptions& options, OutputFormat format, const char* path) {
  switch (format) {
    case OutputFormat::kJpeg:
      return ExportJpeg(context, options, path);
    case OutputFormat::kPng:
      return lumvik_export_png(context, path, options.bits.value_or(8));
    case OutputFormat::kTiff:
      return lumvik_export_tiff(context, path);
  }
  return -1;
}

void Develop(const DevelopOptions& options) {
  const OutputFormat format = *OutputFormatOf(options.output);
  CheckBits(options.bits, format);
  RequirePhotograph(options.input);
  const std::filesystem::path target = ResolveOutput(options.output, options.input);

  Engine engine;
  engine.Run("cannot read '" + options.input + "'", [&](EngineContext* context) {
    return lumvik_load_arw(context, options.input.c_str(), options.decode_quality);
  });
  // After loading, which puts every adjustment back to its default.
  options.adjustments.Apply(engine.context());
  engine.Run("cannot develop '" + options.input + "'", lumvik_process);

  StagedFile file(target, EndingOf(format));
  engine.Run("cannot write '" + options.output + "'", [&](EngineContext* context) {
    return Export(context, options, format, file.temporary_path().c_str());
  });
  file.Commit();
  std::cout << options.output << ' ' << lumvik_get_width(engine.context()) << 'x'
            << lumvik_get_height(engine.context()) << '\n';
}

std::string KnownEnding(const std::string& path) {
  if (OutputFormatOf(path)) return {};
  return "'" + path + "' does not end in .jpg, .jpeg, .png, .tif or .tiff, so its format is unknown";
}

std::string KnownBits(const std::string& text) {
  if (text == "8" || text == "16") return {};
  return "'" + text + "' is not 8 or 16";
}

}  // namespace

void AddDevelopCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("develop", "Develop a photograph and write it to a file");
  auto options = std::make_shared<DevelopOptions>();
  command->add_option("IN", options->input, "The photograph: camera RAW, JPEG, PNG, TIFF, BMP or WebP")
      ->required()
      ->type_name("");
  command
      ->add_option("-o,--output", options->output,
                   "The file to write; its ending .jpg, .jpeg, .png, .tif or .tiff chooses the format")
      ->required()
      ->type_name("OUT")
      ->check(CLI::Validator(KnownEnding, ""));
  options->adjustments.AddTo(*command);
  command
      ->add_option("--quality", options->decode_quality,
                   "Decoding of a camera RAW file: 1 full, 2 and 3 half size first, 4 quarter-size proxy "
                   "(default 1)")
      ->type_name("LEVEL")
      ->check(InRange(1, 4));
  command->add_option("--jpeg-quality", options->jpeg_quality, "Quality of a written JPEG (default 90)")
      ->type_name("QUALITY")
      ->check(InRange(1, 100));
  command
      ->add_option("--bits", options->bits,
                   "Bits a channel: 8 or 16 for PNG (default 8); a JPEG has 8, a TIFF 16")
      ->type_name("BITS")
      ->check(CLI::Validator(KnownBits, ""));
  command->add_flag("--no-exif", options->no_exif, "Leave the photograph's EXIF out of a written JPEG");
  command->callback([options] { Develop(*options); });
}

}  // namespace lumvik
