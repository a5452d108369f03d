#include "options/export.h"

#include <CLI/CLI.hpp>
#include <string>

#include "options/in_range.h"
#include "options/range.h"

namespace lumvik {
namespace {

constexpr Range<int> kJpegQualities = {1, 100};
constexpr int kNoExif = 0;  // the engine copies EXIF from JPEG to JPEG only; see CopyMetadata

std::string CheckBitDepth(const std::string& text) {
  if (text == "8" || text == "16") return {};
  return "'" + text + "' is not 8 or 16";
}

}  // namespace

void AddExportOptions(CLI::App& command, ExportOptions& options) {
  command.add_option("--jpeg-quality", options.jpeg_quality, "JPEG quality (default 90)")
      ->type_name("QUALITY")
      ->check(InRange(kJpegQualities))
      ->group(kOutputGroup);
  command
      .add_option("--bits", options.bits,
                  "Bits per channel: 8 or 16 for PNG (default 8); JPEG has 8, TIFF 16")
      ->type_name("BITS")
      ->check(CLI::Validator(CheckBitDepth, ""))
      ->group(kOutputGroup);
  command.add_flag("--no-exif", options.no_exif, "Do not copy the photograph's metadata")
      ->group(kOutputGroup);
  command.add_flag("--strip-gps", options.strip_gps, "Do not copy GPS data")->group(kOutputGroup);
}

void CheckBits(const ExportOptions& options, OutputFormat format) {
  if (format == OutputFormat::kJpeg && options.bits == 16) {
    throw CLI::ValidationError("--bits", "JPEG has 8 bits per channel; write a PNG or TIFF for 16");
  }
  if (format == OutputFormat::kTiff && options.bits == 8) {
    throw CLI::ValidationError("--bits", "TIFF is written with 16 bits per channel; write a PNG for 8");
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
