#include "options/export.h"

#include <CLI/CLI.hpp>
#include <string>

#include "options/in_range.h"
#include "options/overwrite.h"
#include "options/range.h"

namespace lumvik {
namespace {

constexpr Range<int> kJpegQualities = {1, 100};

constexpr char kKeptProfile[] = "keep";
constexpr char kNoProfile[] = "none";

std::string CheckProfile(const std::string& text) {
  if (text == "srgb" || text == kKeptProfile || text == kNoProfile) return {};
  return "'" + text + "' is not srgb, keep or none";
}

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
  AddSizeOption(command, options.size)->group(kOutputGroup);
  command
      .add_option("--profile", options.profile,
                  "Colors: srgb (converted and tagged, default), keep (those of the photograph, with its "
                  "profile) or none (sRGB without a profile)")
      ->type_name("PROFILE")
      ->check(CLI::Validator(CheckProfile, ""))
      ->group(kOutputGroup);
  command.add_flag("--no-exif", options.no_exif, "Do not copy the photograph's metadata")
      ->group(kOutputGroup);
  command.add_flag("--strip-gps", options.strip_gps, "Do not copy GPS data")->group(kOutputGroup);
  // Options are read in this order.
  const auto set_copyright = [&options](const std::string& text) {
    if (options.no_exif) throw CLI::ExcludesError("--copyright", "--no-exif");
    options.copyright = text;
  };
  command.add_option_function<std::string>("--copyright", set_copyright, "Set the copyright notice")
      ->type_name("TEXT")
      ->group(kOutputGroup);
  command
      .add_flag("--keep-times", options.keep_times,
                "Give the image the times at which the photograph was modified and accessed")
      ->group(kOutputGroup);
  AddOverwriteOption(command, options.overwrite)->group(kOutputGroup);
}

void CheckBits(const ExportOptions& options, lumvik_host_format format) {
  if (format == LUMVIK_HOST_FORMAT_JPEG && options.bits == 16) {
    throw CLI::ValidationError("--bits", "JPEG has 8 bits per channel; write a PNG or TIFF for 16");
  }
  if (format == LUMVIK_HOST_FORMAT_TIFF && options.bits == 8) {
    throw CLI::ValidationError("--bits", "TIFF is written with 16 bits per channel; write a PNG for 8");
  }
}

bool KeepsColors(const ExportOptions& options) {
  return options.profile == kKeptProfile;
}

api::SaveOptions SaveOptionsOf(const ExportOptions& options, api::Size developed, const std::string& mark) {
  api::SaveOptions save = MarkedWith(mark, options.overwrite);
  save.quality = options.jpeg_quality;
  save.bits = options.bits.value_or(0);
  save.metadata = LUMVIK_HOST_METADATA_KEEP;
  if (options.strip_gps) save.metadata = LUMVIK_HOST_METADATA_NO_POSITION;
  if (options.no_exif) save.metadata = LUMVIK_HOST_METADATA_NONE;
  if (options.copyright) save.copyright = options.copyright->c_str();
  const api::Size box = BoxOf(options.size, developed);
  save.max_width = box.width;
  save.max_height = box.height;
  save.no_profile = options.profile == kNoProfile ? 1 : 0;
  return save;
}

}  // namespace lumvik
