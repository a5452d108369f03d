#include "commands/shot_data.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "lumvik_host.hpp"
#include "terminal/json.h"

namespace lumvik {
namespace {

api::ExifInfo ShotDataOf(const std::string& file) {
  try {
    return api::ReadExif(file);
  } catch (const api::Error&) {
    return {};  // unknown
  }
}

void PrintShotData(const std::vector<std::string>& files) {
  for (const std::string& file : files) {
    const api::ExifInfo exif = ShotDataOf(file);
    const Json json = {exif.datetime, exif.make, exif.model, exif.lens};
    std::cout << json.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
  }
}

}  // namespace

void AddShotDataCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand(kShotDataCommand, "Print when and with what photographs were taken");
  command->group("");  // hidden
  auto files = std::make_shared<std::vector<std::string>>();
  command->add_option("FILE", *files, "The photographs")->required();
  command->callback([files] { PrintShotData(*files); });
}

}  // namespace lumvik
