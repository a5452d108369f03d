#include "commands/thumb.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <exiv2/exiv2.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

#include "develop/output_format.h"
#include "develop/path_tools.h"
#include "develop/staged_file.h"
#include "files/file_paths.h"

namespace lumvik {
namespace {

struct ThumbOptions {
  std::string input;
  std::string output;
};

void Write(const ThumbnailFile& thumbnail, const std::string& path, const std::string& shown) {
  std::ofstream file(path, std::ios::binary);
  const auto size = static_cast<std::streamsize>(thumbnail.size);
  if (!file.write(reinterpret_cast<const char*>(thumbnail.data.get()), size).flush()) {
    throw std::runtime_error("cannot write '" + shown + "': " + std::generic_category().message(errno));
  }
}

// "160x120", as stored. Throws for a damaged preview.
std::string SizeOf(const ThumbnailFile& thumbnail, const std::string& input) {
  try {
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    const auto image = Exiv2::ImageFactory::open(thumbnail.data.get(), static_cast<long>(thumbnail.size));
    image->readMetadata();
    return std::to_string(image->pixelWidth()) + 'x' + std::to_string(image->pixelHeight());
  } catch (const Exiv2::AnyError&) {
    throw std::runtime_error("cannot read '" + input + "': the preview in the RAW file is damaged");
  }
}

void WriteThumbnail(const ThumbOptions& options) {
  RequireReadable(options.input);
  const std::filesystem::path target = ResolveOutput(options.output, options.input);
  const ThumbnailFile thumbnail = ExtractThumbnail(options.input);
  const std::string size = SizeOf(thumbnail, options.input);
  StagedFile file(target, ExtensionOf(OutputFormat::kJpeg));
  Write(thumbnail, file.TemporaryPath(), options.output);
  file.Commit();
  std::cout << options.output << ' ' << size << '\n';
}

std::string CheckJpegExtension(const std::string& path) {
  if (OutputFormatOf(path) == OutputFormat::kJpeg) return {};
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
