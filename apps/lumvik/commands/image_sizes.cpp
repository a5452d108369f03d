#include "commands/image_sizes.h"

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "files/file_paths.h"
#include "files/metadata_file.h"

namespace lumvik {
namespace {

struct ImageSize {
  int width = 0;
  int height = 0;
};

ImageSize SizeOf(const std::string& file) {
  try {
    RequireReadable(file);
    const MetadataFile image = ReadMetadata(file);
    if (image) return {image->pixelWidth(), image->pixelHeight()};
  } catch (const std::exception&) {
    // The size stays unknown.
  }
  return {};
}

void PrintSizes(const std::vector<std::string>& files) {
  for (const std::string& file : files) {
    const ImageSize size = SizeOf(file);
    std::cout << size.width << ' ' << size.height << std::endl;
  }
}

}  // namespace

void AddImageSizesCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(kImageSizesCommand, "Print the sizes of photographs");
  command->group("");  // hidden
  auto files = std::make_shared<std::vector<std::string>>();
  command->add_option("FILE", *files, "The photographs")->required();
  command->callback([files] { PrintSizes(*files); });
}

}  // namespace lumvik
