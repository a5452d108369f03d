#include "picture_sizes_command.h"

#include <CLI/CLI.hpp>
#include <exiv2/exiv2.hpp>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace lumvik {
namespace {

struct PictureSize {
  int width = 0;
  int height = 0;
};

PictureSize SizeOf(const std::string& file) {
  if (!std::filesystem::is_regular_file(std::filesystem::u8path(file)))
    return {};  // a pipe would keep the reader waiting
  try {
    const auto image = Exiv2::ImageFactory::open(file, false);
    image->readMetadata();
    return {image->pixelWidth(), image->pixelHeight()};
  } catch (const Exiv2::AnyError&) {
    return {};
  }
}

void PrintSizes(const std::vector<std::string>& files) {
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
  for (const std::string& file : files) {
    const PictureSize size = SizeOf(file);
    std::cout << size.width << ' ' << size.height << std::endl;
  }
}

}  // namespace

void AddPictureSizesCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(kPictureSizesCommand, "Print the sizes of photographs");
  command->group("");  // hidden
  auto files = std::make_shared<std::vector<std::string>>();
  command->add_option("FILE", *files, "The photographs")->required();
  command->callback([files] { PrintSizes(*files); });
}

}  // namespace lumvik
