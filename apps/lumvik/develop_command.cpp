#include "develop_command.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include "adjustment_options.h"
#include "engine.h"
#include "file_paths.h"
#include "in_range.h"
#include "lumvik.h"
#include "output_format.h"
#include "range.h"
#include "settings.h"
#include "settings_file.h"
#include "staged_file.h"
#include "suggestions.h"
#include "written_jpeg.h"

namespace lumvik {
namespace {

constexpr Range<int> kDecodeQualities = {1, 4};
constexpr Range<int> kJpegQualities = {1, 100};
constexpr char kSettingsEnding[] = ".json";

// The headings of the other options in the help.
constexpr char kSettingsFile[] = "Settings file";
constexpr char kAutomatic[] = "Automatic";
constexpr char kOutput[] = "Output";

struct DevelopOptions {
  std::string input;
  std::string output;
  Settings given;                            // by options of their own
  std::optional<std::string> settings;       // the file to read others from
  std::optional<std::string> save_settings;  // and the one to write them all to
  bool auto_enhance = false;
  bool auto_crop = false;
  bool auto_straighten = false;
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

// What the command line gives goes before what the settings file gives.
Settings GivenSettings(const DevelopOptions& options) {
  Settings settings = options.given;
  if (options.settings) {
    RequireReadable(*options.settings);
    settings.merge(ReadSettings(*options.settings));
  }
  return settings;
}

// What is given goes before what the engine suggests for its photograph, and that before the defaults.
Settings CompleteSettings(Settings given, const DevelopOptions& options, Engine& engine) {
  if (options.auto_enhance) given.merge(SuggestedEnhancement(engine));
  if (options.auto_crop) given.merge(SuggestedCrop(engine));
  if (options.auto_straighten) given.merge(SuggestedRotation(engine));
  given.merge(DefaultSettings());
  return given;
}

// Writes the settings beside `target`; they wait there for their Commit.
std::unique_ptr<StagedFile> StageSettings(const Settings& settings, const std::filesystem::path& target) {
  auto file = std::make_unique<StagedFile>(target, kSettingsEnding);
  try {
    WriteSettings(settings, file->TemporaryPath());
  } catch (const std::system_error& error) {
    throw std::runtime_error("cannot write '" + target.string() + "': " + error.code().message());
  }
  return file;
}

void Develop(const DevelopOptions& options) {
  const OutputFormat format = *OutputFormatOf(options.output);
  CheckBits(options.bits, format);
  RequireReadable(options.input);
  const std::filesystem::path target = ResolveOutput(options.output, options.input);
  Settings given = GivenSettings(options);
  std::filesystem::path settings_target;
  if (options.save_settings) settings_target = ResolveOutput(*options.save_settings, options.input);

  Engine engine;
  engine.Run("cannot read '" + options.input + "'", [&](EngineContext* context) {
    return lumvik_load_arw(context, options.input.c_str(), options.decode_quality);
  });
  const Settings settings = CompleteSettings(std::move(given), options, engine);
  Apply(settings, engine.Context());
  engine.Run("cannot develop '" + options.input + "'", lumvik_process);

  std::unique_ptr<StagedFile> settings_file;
  if (!settings_target.empty()) settings_file = StageSettings(settings, settings_target);
  StagedFile file(target, EndingOf(format));
  engine.Run("cannot write '" + options.output + "'", [&](EngineContext* context) {
    return Export(context, options, format, file.TemporaryPath().c_str());
  });
  file.Commit();
  if (settings_file) settings_file->Commit();
  std::cout << options.output << ' ' << lumvik_get_width(engine.Context()) << 'x'
            << lumvik_get_height(engine.Context()) << '\n';
}

std::string KnownEnding(const std::string& path) {
  if (OutputFormatOf(path)) return {};
  return "'" + path + "' does not end in .jpg, .jpeg, .png, .tif or .tiff, so its format is unknown";
}

// Spares the user a photograph lost to a slip of the hand.
std::string SettingsEnding(const std::string& path) {
  if (std::filesystem::path(path).extension() == kSettingsEnding) return {};
  return "'" + path + "' does not end in " + kSettingsEnding;
}

std::string KnownBits(const std::string& text) {
  if (text == "8" || text == "16") return {};
  return "'" + text + "' is not 8 or 16";
}

void AddSettingsFileOptions(CLI::App& command, DevelopOptions& options) {
  command
      .add_option("--settings", options.settings,
                  "Read settings from this file; those given as options override it")
      ->type_name("FILE")
      ->group(kSettingsFile);
  command
      .add_option("--save-settings", options.save_settings,
                  "Write all settings that were used to this file, which ends in .json")
      ->type_name("FILE")
      ->check(CLI::Validator(SettingsEnding, ""))
      ->group(kSettingsFile);
}

void AddAutomaticOptions(CLI::App& command, DevelopOptions& options) {
  command
      .add_flag("--auto", options.auto_enhance,
                "Use the tone, colour and detail that suit the photograph, where nothing is given")
      ->group(kAutomatic);
  command.add_flag("--auto-crop", options.auto_crop, "Crop to the most interesting part, 3:2")
      ->group(kAutomatic);
  command.add_flag("--auto-straighten", options.auto_straighten, "Level the lines near the horizontal")
      ->group(kAutomatic);
}

void AddOutputOptions(CLI::App& command, DevelopOptions& options) {
  command
      .add_option("-o,--output", options.output,
                  "The file to write; its ending .jpg, .jpeg, .png, .tif or .tiff chooses the format")
      ->required()
      ->type_name("OUT")
      ->check(CLI::Validator(KnownEnding, ""))
      ->group(kOutput);
  command
      .add_option("--quality", options.decode_quality,
                  "Decoding of a camera RAW file: 1 full, 2 and 3 half size first, 4 quarter-size proxy "
                  "(default 1)")
      ->type_name("LEVEL")
      ->check(InRange(kDecodeQualities))
      ->group(kOutput);
  command.add_option("--jpeg-quality", options.jpeg_quality, "Quality of a written JPEG (default 90)")
      ->type_name("QUALITY")
      ->check(InRange(kJpegQualities))
      ->group(kOutput);
  command
      .add_option("--bits", options.bits,
                  "Bits a channel: 8 or 16 for PNG (default 8); a JPEG has 8, a TIFF 16")
      ->type_name("BITS")
      ->check(CLI::Validator(KnownBits, ""))
      ->group(kOutput);
  command.add_flag("--no-exif", options.no_exif, "Leave the photograph's EXIF out of a written JPEG")
      ->group(kOutput);
}

}  // namespace

void AddDevelopCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("develop", "Develop a photograph and write it to a file");
  auto options = std::make_shared<DevelopOptions>();
  command->add_option("IN", options->input, "The photograph: camera RAW, JPEG, PNG, TIFF, BMP or WebP")
      ->required()
      ->type_name("");
  AddAdjustmentOptions(*command, options->given);
  AddSettingsFileOptions(*command, *options);
  AddAutomaticOptions(*command, *options);
  AddOutputOptions(*command, *options);
  command->callback([options] { Develop(*options); });
}

}  // namespace lumvik
