#include "commands/image_sizes.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "lumvik_host.hpp"

namespace lumvik {
namespace {

api::Size SizeOf(const std::string& file) {
  try {
    return api::ReadSize(file);
  } catch (const api::Error&) {
    return {};  // unknown
  }
}

void PrintSizes(const std::vector<std::string>& files) {
  for (const std::string& file : files) {
    const api::Size size = SizeOf(file);
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
