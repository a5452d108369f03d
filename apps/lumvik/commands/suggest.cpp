#include "commands/suggest.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "lumvik_host.hpp"
#include "options/photograph.h"
#include "options/reporting.h"
#include "terminal/json.h"
#include "terminal/results.h"

namespace lumvik {
namespace {

struct SuggestOptions {
  Photograph photograph;
  Reporting reporting;
};

struct Tool {
  const char* name;
  std::uint32_t suggests;
};

// In output order.
constexpr Tool kTools[] = {{"exposure", LUMVIK_HOST_SUGGEST_EXPOSURE},
                           {"white_balance", LUMVIK_HOST_SUGGEST_WHITE_BALANCE},
                           {"enhance", LUMVIK_HOST_SUGGEST_ENHANCEMENT},
                           {"crop", LUMVIK_HOST_SUGGEST_CROP},
                           {"straighten", LUMVIK_HOST_SUGGEST_ROTATION}};

// Calls `print(tool, key, value)` for each value. Keys are in the order of a settings file.
template <typename Print>
void ForEachValue(api::Photo& photo, const Print& print) {
  const std::vector<api::SettingInfo> known = api::DescribeSettings();
  for (const Tool& tool : kTools) {
    const api::Settings suggested = photo.Suggest(tool.suggests);
    for (const api::SettingInfo& info : known) {
      if (suggested.Has(info.key)) print(tool.name, std::string(info.key), suggested.Number(info.key));
    }
  }
}

void PrintSuggestions(api::Photo& photo, const Results& results) {
  Json root = Json::object();
  ForEachValue(photo, [&](const char* tool, const std::string& key, float value) {
    root[tool][key.substr(key.find('.') + 1)] = value;
  });
  root.update(results.Summary());
  PrintIndented(root);
}

void PrintTable(api::Photo& photo) {
  std::cout << std::fixed << std::setprecision(4);
  ForEachValue(photo, [](const char* tool, const std::string& key, float value) {
    std::cout << std::left << std::setw(15) << tool << std::setw(22) << key << std::right << std::setw(10)
              << value << '\n';
  });
}

void Suggest(const SuggestOptions& options) {
  Results results(options.reporting);
  RequireInput(options.photograph);
  api::Photo photo = Open(options.photograph, results);
  results.WarnOfUnused(photo);
  if (options.reporting.json) {
    PrintSuggestions(photo, results);
  } else {
    PrintTable(photo);
  }
}

}  // namespace

void AddSuggestCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("suggest", "Print the settings suggested by the automatic tools");
  auto options = std::make_shared<SuggestOptions>();
  AddInputOptions(*command, options->photograph);
  AddReportingOptions(*command, options->reporting);
  command->callback([options] { Suggest(*options); });
}

}  // namespace lumvik
