#include "commands/info.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "info/photograph_facts.h"
#include "lumvik_host.hpp"
#include "terminal/json.h"
#include "terminal/reported_failure.h"

namespace lumvik {
namespace {

struct InfoOptions {
  std::vector<std::string> files;
  bool json = false;
};

void PrintInfo(const InfoOptions& options) {
  nlohmann::ordered_json all = nlohmann::ordered_json::array();
  bool failed = false;
  bool damaged = false;
  for (const std::string& file : options.files) {
    try {
      const PhotographFacts facts = FactsOf(file);
      damaged = damaged || facts.damage;
      if (options.json) {
        all.push_back(JsonOf(facts));
      } else {
        std::cout << TextOf(facts) << std::flush;
      }
    } catch (const std::runtime_error& error) {
      Report(error.what());
      failed = true;
    }
  }
  if (options.json) PrintIndented(all);
  if (failed) throw ReportedFailure();
  if (damaged) throw ReportedFailure(kDamaged);
}

}  // namespace

void AddInfoCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("info", "Print what is known of photographs, and whether they are whole");
  auto options = std::make_shared<InfoOptions>();
  command->add_option("FILE", options->files, "The photographs: camera RAW, JPEG, PNG, TIFF, BMP or WebP")
      ->required()
      ->type_name("");
  command->add_flag("--json", options->json, "Print JSON");
  command->callback([options] { PrintInfo(*options); });
}

}  // namespace lumvik
