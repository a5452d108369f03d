#include "commands/hash.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "similar/photograph_hash.h"
#include "terminal/json.h"
#include "terminal/printable.h"
#include "terminal/reported_failure.h"

namespace lumvik {
namespace {

struct HashOptions {
  std::vector<std::string> files;
  bool json = false;
};

void PrintHashes(const HashOptions& options) {
  nlohmann::ordered_json all = nlohmann::ordered_json::array();
  bool failed = false;
  for (const std::string& file : options.files) {
    try {
      const std::string hash = HexOf(HashOf(file));
      if (options.json) {
        all.push_back({{"hash", hash}, {"path", file}});
      } else {
        std::cout << hash << "  " << Printable(file) << std::endl;
      }
    } catch (const std::runtime_error& error) {
      Report(error.what());
      failed = true;
    }
  }
  if (options.json) PrintIndented(all);
  if (failed) throw ReportedFailure();
}

}  // namespace

void AddHashCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("hash", "Print perceptual hashes, which are close for similar photographs");
  auto options = std::make_shared<HashOptions>();
  command->add_option("FILE", options->files, "The photographs: camera RAW, JPEG, PNG, TIFF, BMP or WebP")
      ->required()
      ->type_name("");
  command->add_flag("--json", options->json, "Print JSON");
  command->callback([options] { PrintHashes(*options); });
}

}  // namespace lumvik
