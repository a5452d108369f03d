#include "export_options.h"

#include <CLI/CLI.hpp>
#include <string>

#include "in_range.h"
#include "range.h"

namespace lumvik {
namespace {

constexpr Range<int> kJpegQualities = {1, 100};
constexpr int kNoExif = 0;  // of the engine's own, which knows neither RAW files nor other formats

std::string KnownBits(const std::string& text) {
  if (text == "8" || text == "16") return {};
  return "'" + text + "' is not 8 or 16";
}

}  // namespace

void AddExportOptions(CLI::App& command, ExportOptions& options) {
  command.add_option("--jpeg-quality", options.jpeg_quality, "Quality of a written JPEG (default 90)")
      ->type_name("QUALITY")
      ->check(InRange(kJpegQualities))
      ->group(kOutputGroup);
  command
      .add_option("--bits", options.bits,
                  "Bits a channel: 8 or 16 for PNG (default 8); a JPEG has 8, a TIFF 16")
      ->type_name("BITS")
      ->check(CLI::Validator(KnownBits, ""))
      ->group(kOutputGroup);
  command.add_flag("--no-exif", options.no_exif, "Leave the photograph's metadata out of the result")
      ->group(kOutputGroup);
  command
      .add_flag("--strip-gps", options.strip_gps,
                "Leave the place where the photograph was taken out of the result")
      ->group(kOutputGroup);
}

void CheckBits(const ExportOptions& options, OutputFormat format) {
  if (format == OutputFormat::kJpeg && options.bits == 16) {
    throw CLI::ValidationError("--bits", "a JPEG holds 8 bits a channel; write a PNG or TIFF for 16");
  }
  if (format == OutputFormat::kTiff && options.bits == 8) {
    throw CLI::ValidationError("--bits",
                               "a TIFF is always written with 16 bits a channel; write a PNG for 8");
  }
}

int Export(EngineContext* context, const ExportOptions& options, OutputFormat format, const char* path) {
  switch (format) {
    case OutputFormat::kJpeg:
      return lumvik_export_jpeg(context, path, options.jpeg_quality, 0, kNoExif);
    case OutputFormat::kPng:
      return lumvik_export_png(context, path, options.bits.value_or(8));
    case OutputFormat::kTiff:
      return lumvik_export_tiff(context, path);
  }
  return -1;
}

}  // namespace lumvik
