#include "commands/hash.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "similar/photograph_hash.h"
#include "terminal/printable.h"
#include "terminal/reported_failure.h"

namespace lumvik {
namespace {

void PrintHashes(const std::vector<std::string>& files) {
  bool failed = false;
  for (const std::string& file : files) {
    try {
      std::cout << HexOf(HashOf(file)) << "  " << Printable(file) << std::endl;
    } catch (const std::runtime_error& error) {
      Report(error.what());
      failed = true;
    }
  }
  if (failed) throw ReportedFailure();
}

}  // namespace

void AddHashCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("hash", "Print perceptual hashes, which are close for similar photographs");
  auto files = std::make_shared<std::vector<std::string>>();
  command->add_option("FILE", *files, "The photographs: camera RAW, JPEG, PNG, TIFF, BMP or WebP")
      ->required()
      ->type_name("");
  command->callback([files] { PrintHashes(*files); });
}

}  // namespace lumvik
